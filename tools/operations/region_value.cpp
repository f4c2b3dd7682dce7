#include "tools/operations/region_value.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tools/operations/value_parsers.h"

namespace vn::tool {
namespace {

using Shape = RegionValue::Shape;

constexpr std::pair<const char*, Shape> kShapes[] = {{"rect", Shape::kRect},
                                                     {"ellipse", Shape::kEllipse},
                                                     {"polygon", Shape::kPolygon},
                                                     {"roundrect", Shape::kRoundRect},
                                                     {"color", Shape::kColor}};

constexpr std::pair<const char*, uint32_t> kModes[] = {
    {"and", REGION_COMBINE_AND},
    {"replace", REGION_COMBINE_REPLACE},
    {"minus", REGION_COMBINE_OLD_MINUS_NEW},
    {"reverse-minus", REGION_COMBINE_NEW_MINUS_OLD},
    {"or", REGION_COMBINE_OR},
    {"xor", REGION_COMBINE_XOR},
    {"invert", REGION_COMBINE_REPLACE_INVERTED}};

template <class Value, size_t N>
std::optional<Value> Named(const std::pair<const char*, Value> (&names)[N],
                           const std::string& name) {
  const auto found = std::find_if(std::begin(names), std::end(names),
                                  [&](const auto& entry) { return name == entry.first; });
  if (found == std::end(names)) return std::nullopt;
  return found->second;
}

bool CountFits(Shape shape, size_t count) {
  if (shape == Shape::kPolygon) return count >= 6 && count % 2 == 0;
  return count == (shape == Shape::kRoundRect ? 6u : 4u);
}

// Sizes that would leave the range of coordinates.
bool RangeFits(Shape shape, const std::vector<int32_t>& numbers) {
  constexpr int32_t kMost = 1 << 26;
  const bool small = std::all_of(numbers.begin(), numbers.end(),
                                 [](int32_t n) { return n >= -kMost && n <= kMost; });
  return small && (shape == Shape::kPolygon || (numbers[2] >= 0 && numbers[3] >= 0));
}

// The numbers of a shape, or nothing for text that does not give them.
std::optional<std::vector<int32_t>> ParseNumbers(Shape shape, const std::string& text) {
  if (shape == Shape::kColor) {
    const auto color = ParseColor(text);
    if (!color) return std::nullopt;
    return std::vector<int32_t>{color->red, color->green, color->blue};
  }
  auto list = ParseNumberList(text);
  if (!list || !CountFits(shape, list->size()) || !RangeFits(shape, *list)) return std::nullopt;
  return list;
}

}  // namespace

std::string RegionForm() {
  return "rect:X,Y,W,H|ellipse:X,Y,W,H|polygon:X,Y,X,Y,...|roundrect:X,Y,W,H,CW,CH|color:#RRGGBB"
         "[,and|or|xor|minus|reverse-minus|invert]";
}

std::optional<RegionValue> ParseRegionValue(const std::string& text) {
  const size_t colon = text.find(':');
  if (colon == text.npos) return std::nullopt;
  const auto shape = Named(kShapes, text.substr(0, colon));
  if (!shape) return std::nullopt;
  RegionValue value{*shape, {}};
  std::string numbers = text.substr(colon + 1);
  const size_t last = numbers.rfind(',');
  if (last != numbers.npos) {
    if (const auto mode = Named(kModes, numbers.substr(last + 1))) {
      value.combine = *mode;
      numbers.resize(last);
    }
  }
  auto list = ParseNumbers(*shape, numbers);
  if (!list) return std::nullopt;
  value.numbers = std::move(*list);
  return value;
}

VnStatus RegionValue::Set(BitmapHandle* bitmap) const {
  const std::vector<int32_t>& n = numbers;
  if (shape == Shape::kColor) return Vn_SetBitmapRgnColor(bitmap, RGB(n[0], n[1], n[2]), combine);
  if (shape == Shape::kPolygon) {
    std::vector<POINT> points;
    for (size_t i = 0; i + 1 < n.size(); i += 2)
      points.push_back({n[i], n[i + 1]});
    return Vn_SetBitmapRgnPolygon(bitmap, &kAsSeen, points.data(),
                                  static_cast<int32_t>(points.size()), REGION_FILL_ALTERNATE,
                                  combine);
  }
  const RECT box = {n[0], n[1], n[0] + n[2], n[1] + n[3]};
  switch (shape) {
    case Shape::kEllipse:
      return Vn_SetBitmapRgnEllipse(bitmap, &kAsSeen, &box, combine);
    case Shape::kRoundRect:
      return Vn_SetBitmapRgnRoundRect(bitmap, &kAsSeen, &box, n[4], n[5], combine);
    default:
      return Vn_SetBitmapRgnRect(bitmap, &kAsSeen, &box, combine);
  }
}

}  // namespace vn::tool
