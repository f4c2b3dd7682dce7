// Pixels picked along a straight line through a picture: the inner loop of rotation.
#ifndef VNCORE_GEOMETRY_PICK_PIXELS_H
#define VNCORE_GEOMETRY_PICK_PIXELS_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Pixel i of the line is that of column (x + i * stepX) >> 14 in row (y + i * stepY) >> 14, counted
// from `origin`, which is the first of a byte. No column is below 0; rows can be.
struct PickLine {
  const uint8_t* origin;
  ptrdiff_t stride;
  int32_t x, y;
  int32_t stepX, stepY;
};

// Longest line: the coordinates must fit their words.
inline constexpr size_t kLongestPick = 32768;

// Writes `count` pixels of the line to the pixels of `row` from `first` on, and nothing else.
using Picker = void (*)(const PickLine& line, uint8_t* row, size_t first, size_t count);

// For one of the six depths.
Picker PickerOf(int32_t bitsPerPixel);

}  // namespace vn

#endif
