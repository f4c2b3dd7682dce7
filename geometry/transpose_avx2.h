// The vector forms of the transposition; only transpose.cpp calls them. They do what a Transposer
// does, or nothing, and return false, for a block that is smaller than theirs.
#ifndef VNCORE_GEOMETRY_TRANSPOSE_AVX2_H
#define VNCORE_GEOMETRY_TRANSPOSE_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

using TransposeTry = bool(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                          ptrdiff_t destinationStride, size_t rows, size_t columns);
TransposeTry Transpose1Avx2, Transpose4Avx2, Transpose8Avx2, Transpose16Avx2, Transpose24Avx2,
    Transpose32Avx2;

}  // namespace vn

#endif
