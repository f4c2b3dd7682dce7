// Where rows and columns lie in storage.
#ifndef VNCORE_KERNEL_ROW_POSITION_H
#define VNCORE_KERNEL_ROW_POSITION_H

#include <vncore/vncore.h>

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

// Pixels that a row has bytes for: Width, unless somebody changed the record. A depth that is none
// counts as the widest.
inline int32_t ColumnsInRow(const BitmapHandle& bitmap) {
  const int32_t depth = bitmap.BitsPerPixel;
  const bool narrow = depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24;
  const uint32_t bits = narrow ? static_cast<uint32_t>(depth) : 32;
  const uint64_t columns = uint64_t{bitmap.BytesPerLine} * 8 / bits;
  return static_cast<int32_t>(columns < INT32_MAX ? columns : INT32_MAX);
}

// Without storage the handles in the record are stale, and somebody else's may have their values.
inline bool HasPixels(const BitmapHandle& bitmap) {
  return bitmap.Flags & (FLAG_IN_MEMORY | FLAG_ON_DISK);
}

// The pixels where they have an address: null in a file, and in a moveable block that nobody has
// locked or that is gone.
inline uint8_t* PixelAddress(const BitmapHandle& bitmap) {
  return bitmap.Flags & FLAG_IN_MEMORY ? bitmap.Bits : nullptr;
}

}  // namespace vn

#endif
