// The vector forms of writing indexes; only dither_blocks.cpp calls them.
#ifndef VNCORE_COLOR_INDEX_ROWS_AVX2_H
#define VNCORE_COLOR_INDEX_ROWS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Write the low 1 or 4 bits of indexes from the first on, in groups of 32. Return how many.
using IndexVectors = size_t(const uint8_t* indexes, size_t count, uint8_t* target);
IndexVectors WriteIndexes1Avx2, WriteIndexes4Avx2;

}  // namespace vn

#endif
