// Widening of 16- and 32-bit rows to 24 bits for the device.
#ifndef VNCORE_DEVICE_EXPAND_ROWS_H
#define VNCORE_DEVICE_EXPAND_ROWS_H

#include <vncore/vn_bitmap.h>

namespace vn {

// Pixels `first` to `last` - 1 of `source` become the pixels from 0 on of `destination`, low field
// or byte first: the channel order stays as it is, and the device is not told of it. `bitmap` is
// not read.
using ExpandRow = void (*)(uint8_t* destination, const uint8_t* source, const BitmapHandle* bitmap,
                           int32_t first, int32_t last);

void ExpandRow16(uint8_t* destination, const uint8_t* source, const BitmapHandle* bitmap,
                 int32_t first, int32_t last);
void ExpandRow32(uint8_t* destination, const uint8_t* source, const BitmapHandle* bitmap,
                 int32_t first, int32_t last);

// The loop for a depth; null for any but 16 and 32.
ExpandRow SelectExpandRow(int32_t sourceBits);

}  // namespace vn

#endif
