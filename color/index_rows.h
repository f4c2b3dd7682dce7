// Rows of indexes written, whole bytes at a time.
#ifndef VNCORE_COLOR_INDEX_ROWS_H
#define VNCORE_COLOR_INDEX_ROWS_H

#include "kernel/pixel_format.h"

namespace vn {

// Writes valueOf(x), below 2 to the power `Bits`, for the pixels from 0 to `width` - 1, in that
// order. Bits of a last byte behind the last pixel keep what they held.
template <int Bits, class ValueOf>
void WriteIndexes(uint8_t* target, size_t width, const ValueOf& valueOf) {
  constexpr size_t kPerByte = 8 / Bits;
  size_t x = 0;
  for (; x + kPerByte <= width; x += kPerByte) {
    uint32_t byte = 0;
    for (size_t i = 0; i < kPerByte; ++i)
      byte = byte << Bits | valueOf(x + i);
    target[x / kPerByte] = static_cast<uint8_t>(byte);
  }
  PixelWriter<Bits> rest(target + x / kPerByte);
  for (; x < width; ++x)
    rest.Put(valueOf(x));
  rest.Finish();
}

}  // namespace vn

#endif
