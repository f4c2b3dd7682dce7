// The vector forms of ordered rows; only ordered_rows.cpp calls them.
#ifndef VNCORE_COLOR_ORDERED_ROWS_AVX2_H
#define VNCORE_COLOR_ORDERED_ROWS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Write the indexes of pixels from the first on, in groups of 32. Return how many pixels.
using OrderedVectors = size_t(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                              size_t count);
OrderedVectors Ordered1Avx2, Ordered4Avx2, Ordered8Avx2;

}  // namespace vn

#endif
