// The vector forms of the byte shuffles; only swizzle_24_32.cpp calls them.
#ifndef VNCORE_COLOR_SWIZZLE_24_32_AVX2_H
#define VNCORE_COLOR_SWIZZLE_24_32_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Whole eights of pixels, the last ending at `end`. Returns the number of pixels left before them.
using WidenVectors = size_t(uint8_t* row, size_t end, bool swap);
WidenVectors WidenEightsAvx2;

// The pixels up to `end`, a multiple of 8; at least 3 pixels follow it.
using NarrowVectors = void(uint8_t* row, size_t end, bool swap);
NarrowVectors NarrowEightsAvx2;

// The pixels up to `end`, a multiple of 16.
using SwapVectors = void(uint8_t* row, size_t end);
SwapVectors SwapSixteensAvx2;

}  // namespace vn

#endif
