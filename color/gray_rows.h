// Grays of a row: what gray scale, halftones and the conversion to BPP_GRAY share.
#ifndef VNCORE_COLOR_GRAY_ROWS_H
#define VNCORE_COLOR_GRAY_ROWS_H

#include <cstddef>
#include <cstdint>

#include <vncore/vncore.h>

namespace vn {

// Writes `width` gray levels, a byte each, from a row in the format that the loop was chosen for.
// `levels`: the gray of each palette entry, read up to 8 bits only. The rows are apart.
using GrayRow = void (*)(const uint8_t* source, uint8_t* target, size_t width,
                         const uint8_t* levels);

// The loop for a depth (any but 1, 4, 8, 16 and 24 reads as 32) and order.
GrayRow SelectGrayRow(int32_t bitsPerPixel, uint32_t order);

// Fills `levels` with the grays of the active palette of a bitmap below 16 bits; 256 bytes. False
// when the bitmap has no palette that gives all its entries.
bool ReadGrayLevels(const BitmapHandle& bitmap, uint8_t* levels);

// Whether a row of the bitmap holds all that a gray row reads. Not so where the depth is none of
// the usual and the stride is short of 32 bits a pixel, or where the stride wrapped.
bool HoldsGraySource(const BitmapHandle& bitmap);

}  // namespace vn

#endif
