// Rows in and out of a bitmap's storage: the hot inner step of every operation. Callers are taken
// at their word; range checks belong to the operations.
#include <cstring>

#include <vncore/vncore.h>
#include "kernel/row_position.h"

namespace {

using vn::ByteOfColumn;
using vn::MoveToRow;
using vn::PixelAddress;

// Seeks in the temporary file. OK, or what the row call returns.
VnStatus SeekFile(BitmapHandle* bitmap, uint32_t position) {
  if (!(bitmap->Flags & FLAG_ON_DISK)) return ERR_NO_MEMORY;  // no storage, or no address
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
  if (const uint8_t* const bits = PixelAddress(*bitmap)) [[likely]] {
    if (count) std::memcpy(buffer, bits + position, count);
    return static_cast<int32_t>(count);
  }
  return ReadFromFile(bitmap, buffer, position, count);
}

inline int32_t Write(BitmapHandle* bitmap, const void* buffer, uint32_t position, uint32_t count) {
  if (uint8_t* const bits = PixelAddress(*bitmap)) [[likely]] {
    if (count) std::memcpy(bits + position, buffer, count);
    return static_cast<int32_t>(count);
  }
  return WriteToFile(bitmap, buffer, position, count);
}

}  // namespace

int32_t VN_CALL Vn_GetBitmapRow(BitmapHandle* bitmap, void* buffer, uint32_t row, uint32_t count) {
  return Read(bitmap, buffer, MoveToRow(bitmap, row), count);
}

int32_t VN_CALL Vn_PutBitmapRow(BitmapHandle* bitmap, const void* buffer, uint32_t row,
                                uint32_t count) {
  return Write(bitmap, buffer, MoveToRow(bitmap, row), count);
}

int32_t VN_CALL Vn_GetBitmapRowCol(BitmapHandle* bitmap, void* buffer, uint32_t row,
                                   uint32_t column, uint32_t count) {
  const uint32_t inRow = ByteOfColumn(bitmap->BitsPerPixel, column);
  return Read(bitmap, buffer, MoveToRow(bitmap, row) + inRow, count);
}

int32_t VN_CALL Vn_PutBitmapRowCol(BitmapHandle* bitmap, const void* buffer, uint32_t row,
                                   uint32_t column, uint32_t count) {
  const uint32_t inRow = ByteOfColumn(bitmap->BitsPerPixel, column);
  return Write(bitmap, buffer, MoveToRow(bitmap, row) + inRow, count);
}
