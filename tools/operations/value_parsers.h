// What the values of options mean: sizes, rectangles, colours, and the storage kinds.
#ifndef VNCORE_TOOLS_VALUE_PARSERS_H
#define VNCORE_TOOLS_VALUE_PARSERS_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/pixel_format.h"

namespace vn::tool {

struct Size {
  int32_t width, height;
};

// A new size for pictures: one size for all, or a factor.
struct NewSize {
  std::optional<Size> fixed;
  double factor = 1;

  int64_t WidthOf(int32_t width) const { return fixed ? fixed->width : Scaled(width); }
  int64_t HeightOf(int32_t height) const { return fixed ? fixed->height : Scaled(height); }

 private:
  int64_t Scaled(int32_t side) const { return std::max<int64_t>(1, std::llround(side * factor)); }
};

// The picture as seen, from its top left.
struct Area {
  int32_t x, y, width, height;
};

// What is kept of pictures: a rectangle, or a size out of their middle.
struct Part {
  Area area;
  bool middle = false;  // then the area's place is not looked at

  // Throws Failure, in the name of --crop, unless it lies within a picture of this size.
  Area Of(int32_t width, int32_t height) const;
};

// "640x480"
std::optional<Size> ParseSize(const std::string& text);
// "640x480", "50%", "12.5%"
std::optional<NewSize> ParseNewSize(const std::string& text);
// "25", "12.5": a finite number
std::optional<double> ParseDecimal(std::string_view text);
// "X,Y,W,H", "WxH"
std::optional<Part> ParsePart(const std::string& text);
// "1,2,3": at least one whole number
std::optional<std::vector<int32_t>> ParseNumberList(const std::string& text);
// "white", "#fff", "#ffffff" or "255,255,255"
std::optional<Rgb> ParseColor(const std::string& text);
// "auto", "disk", "memory": a STORAGE_ value
std::optional<int32_t> ParseStorage(const std::string& text);

// The area in storage rows.
RECT StorageRect(const BitmapHandle& bitmap, const Area& area);

}  // namespace vn::tool

#endif
