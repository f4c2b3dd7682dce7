#include "tools/operations/reduction.h"

#include <algorithm>

#include "tools/operations/best_palette.h"
#include "tools/operations/headless_device.h"
#include "tools/operations/named_palettes.h"
#include "tools/operations/value_parsers.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// By method number.
constexpr const char* kMethods[] = {"none",   "floyd-steinberg", "stucki",
                                    "burkes", "sierra",          "stevenson-arce",
                                    "jarvis", "ordered",         "clustered"};
constexpr uint32_t kFloydSteinberg = 1;

std::optional<uint32_t> ParseMethod(const std::string& name) {
  const auto found = std::find(std::begin(kMethods), std::end(kMethods), name);
  if (found == std::end(kMethods)) return std::nullopt;
  return static_cast<uint32_t>(found - std::begin(kMethods));
}

std::optional<uint32_t> ParseCount(const std::string& text, int32_t low, int32_t high) {
  const auto list = ParseNumberList(text);
  if (!list || list->size() != 1 || (*list)[0] < low || (*list)[0] > high) return std::nullopt;
  return static_cast<uint32_t>((*list)[0]);
}

std::optional<uint32_t> ParseDepth(const std::string& text) {
  const auto depth = ParseCount(text, 1, 32);
  constexpr uint32_t kDepths[] = {1, 4, 8, 16, 24, 32};
  if (!depth || std::find(std::begin(kDepths), std::end(kDepths), *depth) == std::end(kDepths)) {
    return std::nullopt;
  }
  return depth;
}

uint32_t DepthFor(size_t colors) { return colors <= 2 ? 1 : colors <= 16 ? 4 : 8; }

}  // namespace

const std::vector<Reduction::Setting>& Reduction::Settings() {
  static const std::vector<Setting> settings = {
      {"--depth", "1|4|8|16|24|32", "Change the depth; the next three settings go with it"},
      {"--palette", "fixed|optimized|best|system|NAME|FILE",
       "Colours (optimized); best is libimagequant's choice, NAME one of vncore palettes, FILE a "
       "GIMP palette"},
      {"--colors", "N", "Number of colours (as many as the depth has)"},
      {"--dither",
       "none|floyd-steinberg|stucki|burkes|sierra|stevenson-arce|jarvis|ordered|clustered",
       "Dithering (floyd-steinberg); goes with one of the three before"}};
  return settings;
}

bool Reduction::Lacks(const std::string& option) const {
  if (option == "--depth") return !depth_;
  if (option == "--colors") return !colors_;
  if (option == "--dither") return !method_;
  return !palette_;
}

bool Reduction::Take(const std::string& option, const std::string& value) {
  if (option == "--depth") return (depth_ = ParseDepth(value)).has_value();
  if (option == "--colors") return (colors_ = ParseCount(value, 2, 256)).has_value();
  if (option == "--dither") return (method_ = ParseMethod(value)).has_value();
  palette_ = value;
  return !value.empty();
}

uint32_t Reduction::Depth(size_t fileColors) const {
  if (depth_) return *depth_;
  if (colors_) return DepthFor(*colors_);
  return fileColors ? DepthFor(fileColors) : 8;
}

Operation Reduction::Build() const {
  const std::string palette = palette_.value_or("optimized");
  std::vector<RGBQUAD> file;
  uint32_t flags = RES_OPTIMIZED_PALETTE;
  if (palette == "fixed") {
    flags = RES_FIXED_PALETTE;
  } else if (palette == "system") {
    flags = RES_SYSTEM_COLORS;
  } else if (palette == "best") {
    flags = RES_USER_PALETTE;  // once there is a picture
  } else if (palette != "optimized") {
    file = NamedOrFilePalette(palette);
    flags = RES_USER_PALETTE;
  }
  const uint32_t depth = Depth(file.size());
  uint32_t count = colors_.value_or(static_cast<uint32_t>(file.size()));
  if (!file.empty()) count = std::min(count, static_cast<uint32_t>(file.size()));
  if (depth > 8) {
    if (palette_ || colors_ || method_) {
      throw Failure("--depth " + std::to_string(depth) + " takes no palette and no dithering");
    }
    flags = RES_ORDER_BGR;
  } else {
    if (count > 1u << depth) {
      throw Failure("--depth " + std::to_string(depth) + " has no room for that many colours");
    }
    if (flags == RES_FIXED_PALETTE && count) throw Failure("the fixed palette takes no --colors");
    flags |= RES_DITHER_METHOD(method_.value_or(kFloydSteinberg));
  }
  const bool best = palette == "best";
  return [=](Bitmap& bitmap) {
    const std::vector<RGBQUAD> found =
        best ? BestPalette(bitmap, count ? count : 1u << depth) : file;
    const auto colors = best ? static_cast<uint32_t>(found.size()) : count;
    // The system's colours are those of a palette display.
    std::optional<HeadlessDevice> display;
    if (flags & RES_SYSTEM_COLORS) display.emplace(1, 1, 8);
    RequireDone("--depth",
                Vn_ColorResBitmap(bitmap, bitmap, depth, flags,
                                  found.empty() ? nullptr : found.data(), colors, nullptr, 0));
  };
}

}  // namespace vn::tool
