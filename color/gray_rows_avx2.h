// The vector forms of gray rows; only gray_rows.cpp calls them.
#ifndef VNCORE_COLOR_GRAY_ROWS_AVX2_H
#define VNCORE_COLOR_GRAY_ROWS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Write the grays of pixels from the start of a row on, in groups. Return how many.
using GrayVectors = size_t(const uint8_t* source, uint8_t* target, size_t width);
GrayVectors Grays24BgrAvx2, Grays24RgbAvx2, Grays32BgrAvx2, Grays32RgbAvx2;

}  // namespace vn

#endif
