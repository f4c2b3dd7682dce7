// Rows in and out of a bitmap's storage: the hot inner step of every operation. Callers are taken
// at their word; range checks belong to the operations.
#include <cstring>

#include "kernel/vncore.h"

namespace {

// Moves the row-position cache. A step to a neighbour adds, a jump multiplies; all modulo 2^32.
inline void MoveToRow(BitmapHandle* bitmap, uint32_t row) {
  const uint32_t distance = bitmap->CurrentRow - row;
  if (distance == 0) return;
  if (distance == 0xFFFFFFFFu) {
    bitmap->CurrentOffset += bitmap->BytesPerLine;
  } else if (distance == 1) {
    bitmap->CurrentOffset -= bitmap->BytesPerLine;
  } else {
    bitmap->CurrentOffset = bitmap->BytesPerLine * row;
  }
  bitmap->CurrentRow = row;
}

// The byte that holds the left end of pixel `column`.
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

// Seeks in the temporary file. OK, or what the row call returns.
VnStatus SeekFile(BitmapHandle* bitmap, uint32_t position) {
  if (!(bitmap->Flags & FLAG_ON_DISK)) return ERR_NO_MEMORY;  // no storage at all
  const uint32_t reached = Vn_OsSeek(bitmap->Storage, static_cast<int32_t>(position), 0);
  return reached == position ? OK : ERR_FILE_SEEK;
}

int32_t ReadFromFile(BitmapHandle* bitmap, void* buffer, uint32_t position, uint32_t count) {
  const VnStatus status = SeekFile(bitmap, position);
  if (status != OK) return status;
  const int32_t done = Vn_OsRead(bitmap->Storage, buffer, count);
  return done == -1 ? ERR_FILE_READ : done;
}

int32_t WriteToFile(BitmapHandle* bitmap, const void* buffer, uint32_t position, uint32_t count) {
  const VnStatus status = SeekFile(bitmap, position);
  if (status != OK) return status;
  const int32_t done = Vn_OsWrite(bitmap->Storage, buffer, count);
  return done == -1 ? ERR_FILE_WRITE : done;
}

inline int32_t Read(BitmapHandle* bitmap, void* buffer, uint32_t position, uint32_t count) {
  if (bitmap->Flags & FLAG_IN_MEMORY) [[likely]] {
    std::memcpy(buffer, bitmap->Bits + position, count);
    return static_cast<int32_t>(count);
  }
  return ReadFromFile(bitmap, buffer, position, count);
}

inline int32_t Write(BitmapHandle* bitmap, const void* buffer, uint32_t position, uint32_t count) {
  if (bitmap->Flags & FLAG_IN_MEMORY) [[likely]] {
    std::memcpy(bitmap->Bits + position, buffer, count);
    return static_cast<int32_t>(count);
  }
  return WriteToFile(bitmap, buffer, position, count);
}

}  // namespace

int32_t VN_CALL Vn_GetBitmapRow(BitmapHandle* bitmap, void* buffer, uint32_t row, uint32_t count) {
  MoveToRow(bitmap, row);
  return Read(bitmap, buffer, bitmap->CurrentOffset, count);
}

int32_t VN_CALL Vn_PutBitmapRow(BitmapHandle* bitmap, const void* buffer, uint32_t row,
                                uint32_t count) {
  MoveToRow(bitmap, row);
  return Write(bitmap, buffer, bitmap->CurrentOffset, count);
}

int32_t VN_CALL Vn_GetBitmapRowCol(BitmapHandle* bitmap, void* buffer, uint32_t row,
                                   uint32_t column, uint32_t count) {
  const uint32_t inRow = ByteOfColumn(bitmap->BitsPerPixel, column);
  MoveToRow(bitmap, row);
  return Read(bitmap, buffer, bitmap->CurrentOffset + inRow, count);
}

int32_t VN_CALL Vn_PutBitmapRowCol(BitmapHandle* bitmap, const void* buffer, uint32_t row,
                                   uint32_t column, uint32_t count) {
  const uint32_t inRow = ByteOfColumn(bitmap->BitsPerPixel, column);
  MoveToRow(bitmap, row);
  return Write(bitmap, buffer, bitmap->CurrentOffset + inRow, count);
}
