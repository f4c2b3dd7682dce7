// Nearest-pixel scaling of one row, shared by resizing and painting.
#ifndef VNCORE_GEOMETRY_SCALE_ROW_H
#define VNCORE_GEOMETRY_SCALE_ROW_H

#include <cstdint>

namespace vn {

// Writes `count` pixels of `destination`. Destination pixel d takes the source pixel
//   startPixel + d * stepQuotient + floor((accumulator + d * stepRemainder) / divisor).
// From 8 bits up `startPixel` is not used: `source` points to the first pixel. At 1 and 4 bits
// `source` points to the byte that holds `startPixel`, and a nonzero `expand` ignores
// `stepQuotient`. At 1 bit `rowBytes` bytes of the destination are zeroed first. The rows must be
// apart, except from 8 bits up when shrinking. Other depths do nothing.
void ScaleRow(int32_t bitsPerPixel, uint32_t rowBytes, uint32_t startPixel, uint32_t stepQuotient,
              uint32_t accumulator, uint32_t stepRemainder, const uint8_t* source,
              uint8_t* destination, uint32_t count, uint32_t divisor, int32_t expand);

}  // namespace vn

#endif
