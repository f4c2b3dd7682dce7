// The transposition of a block of pixels at every depth.
#ifndef VNCORE_GEOMETRY_TRANSPOSE_H
#define VNCORE_GEOMETRY_TRANSPOSE_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Pixel x of source row y becomes pixel y of destination row x, for `columns` values of x and
// `rows` values of y. Both start at a whole byte; strides may be negative, which turns the block
// over on the way. The bits behind the last pixel in the last byte of a destination row become 0.
// No byte outside the two blocks is read or written; they are apart.
using Transposer = void (*)(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* destination,
                            ptrdiff_t destinationStride, size_t rows, size_t columns);

// For one of the six depths.
Transposer TransposerOf(int32_t bitsPerPixel);

}  // namespace vn

#endif
