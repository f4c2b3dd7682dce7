// Regions on the command line: a shape in the picture as seen, or the pixels of one colour, and how
// they join the present one.
#ifndef VNCORE_TOOLS_REGION_VALUE_H
#define VNCORE_TOOLS_REGION_VALUE_H

#include <optional>
#include <string>
#include <vector>

#include <vncore/vncore.h>

namespace vn::tool {

// Of functions that take a region: the picture as seen, whichever way its rows lie.
inline constexpr RegionTransform kAsSeen = {VIEW_TOP_FIRST, 1, 1, 1, 1, 0, 0};

struct RegionValue {
  enum class Shape { kRect, kEllipse, kPolygon, kRoundRect, kColor };
  Shape shape;
  // X,Y,W,H; a polygon's points; a round rectangle's corner behind; red, green, blue of a colour.
  std::vector<int32_t> numbers;
  uint32_t combine = REGION_COMBINE_REPLACE;

  // Sets the bitmap's region.
  VnStatus Set(BitmapHandle* bitmap) const;
};

// What ParseRegionValue takes.
std::string RegionForm();
std::optional<RegionValue> ParseRegionValue(const std::string& text);

}  // namespace vn::tool

#endif
