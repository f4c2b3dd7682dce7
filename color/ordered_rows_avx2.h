// The vector forms of ordered rows; only ordered_rows.cpp calls them.
#ifndef VNCORE_COLOR_ORDERED_ROWS_AVX2_H
#define VNCORE_COLOR_ORDERED_ROWS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// How pixels lie: blue, green, red in three bytes, or red first, or with a fourth byte.
enum class OrderedPixels { k24, k24Swapped, k32 };

// Writes the indexes of pixels from the first on, in groups of 32. Returns how many pixels.
using OrderedVectors = size_t(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                              size_t count);
// By the target's bits (1, 4, 8) and the pixels; to 1 bit from grays of a byte.
extern OrderedVectors* const kOrderedVectorsAvx2[3][3];

}  // namespace vn

#endif
