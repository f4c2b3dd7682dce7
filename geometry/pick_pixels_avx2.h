// The vector forms of picking; only pick_pixels.cpp calls them.
#ifndef VNCORE_GEOMETRY_PICK_PIXELS_AVX2_H
#define VNCORE_GEOMETRY_PICK_PIXELS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

struct PickLine;

// Write pixels of the line from the start of byte `to` on, in groups of eight. Return how many: a
// rest below eight is left, or all where the line's reach is too large for 32 bits.
using PickVectors = size_t(const PickLine& line, uint8_t* to, size_t count);
PickVectors Pick1Avx2, Pick4Avx2, Pick8Avx2, Pick16Avx2, Pick24Avx2, Pick32Avx2;

}  // namespace vn

#endif
