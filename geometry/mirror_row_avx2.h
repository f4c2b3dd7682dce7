// The vector forms of the mirror; only mirror_row.cpp calls them.
#ifndef VNCORE_GEOMETRY_MIRROR_ROW_AVX2_H
#define VNCORE_GEOMETRY_MIRROR_ROW_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Exchange whole vectors of units (bytes up to 8 bits, else pixels) of `first`, from its start on,
// with those of `second` from its end backward, each turned. The rows are apart or the same. Return
// the number of units done at either end.
using MirrorVectors = size_t(uint8_t* first, uint8_t* second, size_t units);
MirrorVectors Mirror1Avx2, Mirror4Avx2, Mirror8Avx2, Mirror16Avx2, Mirror24Avx2, Mirror32Avx2;

// Exchanges whole vectors from the start of two rows that are apart. Returns how many bytes.
size_t ExchangeAvx2(uint8_t* first, uint8_t* second, size_t bytes);

// Moves bytes of a row left by 1 to 7 bits. Returns how many were done; at least one is not.
size_t ShiftLeftAvx2(uint8_t* row, size_t bytes, unsigned shift);

}  // namespace vn

#endif
