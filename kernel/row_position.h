// Where rows and columns lie in storage.
#ifndef VNCORE_KERNEL_ROW_POSITION_H
#define VNCORE_KERNEL_ROW_POSITION_H

#include "kernel/vncore.h"

namespace vn {

// Moves the record's row cache to `row` and returns the row's offset. Neighbouring rows cost an
// addition, others a multiplication, all modulo 2 to the power 32.
inline uint32_t MoveToRow(BitmapHandle* bitmap, uint32_t row) {
  const uint32_t delta = bitmap->CurrentRow - row;
  if (delta == 0) return bitmap->CurrentOffset;
  if (delta == UINT32_MAX) {
    bitmap->CurrentOffset += bitmap->BytesPerLine;
  } else if (delta == 1) {
    bitmap->CurrentOffset -= bitmap->BytesPerLine;
  } else {
    bitmap->CurrentOffset = bitmap->BytesPerLine * row;
  }
  bitmap->CurrentRow = row;
  return bitmap->CurrentOffset;
}

// Byte of a row that holds the left end of pixel `column`.
inline uint32_t ByteOfColumn(int32_t bitsPerPixel, uint32_t column) {
  switch (bitsPerPixel) {
    case 1:
      return column >> 3;
    case 4:
      return column >> 1;
    case 16:
      return column * 2;
    case 24:
      return column * 3;
    case 32:
      return column * 4;
    default:
      return column;
  }
}

}  // namespace vn

#endif
