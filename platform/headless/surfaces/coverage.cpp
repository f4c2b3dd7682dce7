#include "platform/headless/surfaces/coverage.h"

#include <algorithm>

#include "platform/headless/surfaces/pixel_rows.h"

namespace headless {
namespace {

// Rounded to the nearest; a weight of 255 is all of `to`.
uint32_t MixChannel(uint32_t from, uint32_t to, uint32_t weight) {
  return (from * (255 - weight) + to * weight + 127) / 255;
}

void MixRow(const PixelLayout& layout, uint8_t* row, int32_t x, int32_t count,
            const uint8_t* weights, uint32_t rgb) {
  constexpr int32_t kPiece = 64;
  uint32_t pixels[kPiece];
  for (int32_t done = 0; done < count; done += kPiece) {
    const int32_t piece = std::min(kPiece, count - done);
    LoadPixels(row, layout.bits, x + done, piece, pixels);
    PixelsToRgb(layout, piece, pixels);
    for (int32_t i = 0; i < piece; ++i) {
      const uint32_t p = pixels[i], weight = weights[done + i];
      pixels[i] = MixChannel(p >> 16 & 0xFF, rgb >> 16 & 0xFF, weight) << 16 |
                  MixChannel(p >> 8 & 0xFF, rgb >> 8 & 0xFF, weight) << 8 |
                  MixChannel(p & 0xFF, rgb & 0xFF, weight);
    }
    RgbToPixels(layout, piece, pixels);
    StorePixels(row, layout.bits, x + done, piece, pixels);
  }
}

}  // namespace

void LayOn(const Surface& target, const ClipRects* clip, const Coverage& coverage, uint32_t rgb) {
  const RECT& area = coverage.area;
  const RECT whole = {0, 0, target.width, target.height};
  ForEachSeen(clip, Common(area, whole), [&](const RECT& r) {
    for (int32_t y = r.top; y < r.bottom; ++y) {
      const auto at = static_cast<ptrdiff_t>(y - area.top) * (area.right - area.left);
      MixRow(target.layout, target.Row(y), r.left, r.right - r.left,
             coverage.values + at + (r.left - area.left), rgb);
    }
  });
}

}  // namespace headless
