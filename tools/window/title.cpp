#include "tools/window/title.h"

#include <cstdio>
#include <filesystem>

#include "tools/operations/region_value.h"

namespace vn::tool {
namespace {

std::string Measures(int64_t width, int64_t height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

std::string Bits(int32_t bits) { return std::to_string(bits) + (bits == 1 ? " bit" : " bits"); }

std::string Dithering(uint32_t mode) {
  std::string text = "diffused";
  if (mode & MODE_ORDERED_DITHER) text = mode & MODE_CLUSTERED_MATRIX ? "clustered" : "ordered";
  if (mode & MODE_BITONAL_GRAY) text += ", 1 bit in gray";
  if (mode & MODE_BITONAL_VOTE) text += ", thin lines kept";
  if (mode & MODE_FIXED_PALETTE) text += ", fixed palette";
  return text;
}

}  // namespace

std::string Title(const Shown& shown) {
  constexpr const char* kBreak = " \u00B7 ";
  std::string title = shown.note.empty() ? "" : shown.note + kBreak;
  title += std::filesystem::path(shown.path).filename().string();
  if (shown.count > 1)
    title += " (" + std::to_string(shown.at + 1) + " of " + std::to_string(shown.count) + ")";
  title += kBreak + Measures(shown.bitmap->Width, shown.bitmap->Height) + ", " +
           Bits(shown.bitmap->BitsPerPixel);
  title += kBreak + ("screen " + Bits(shown.screen.bits)) + ", " + Dithering(shown.screen.mode);
  title += kBreak + shown.effect;
  char zoom[32];
  std::snprintf(zoom, sizeof zoom, "%.4g %%", shown.zoom * 100);
  title += kBreak + std::string(zoom);
  RECT r{};
  if (Vn_BitmapHasRgn(shown.bitmap) && Vn_GetBitmapRgnBounds(shown.bitmap, &kAsSeen, &r) == OK) {
    title += kBreak + ("region " + Measures(r.right - r.left, r.bottom - r.top)) + " at " +
             std::to_string(r.left) + "," + std::to_string(r.top);
  }
  return title;
}

}  // namespace vn::tool
