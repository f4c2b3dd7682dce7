// A bitmap made from a rectangle of another.
#include <algorithm>

#include <vncore/vncore.h>
#include "kernel/guards.h"
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"
#include "region/region_motion.h"

namespace {

// Bits by which the first pixel of `left` lies behind the start of its byte.
uint32_t ShiftOfColumn(uint32_t left, int32_t bits) {
  if (bits == 1) return left % 8;
  if (bits == 4) return left % 2 * 4;
  return 0;
}

// Moves a row of `count` bytes to the left by 1 to 7 bits; zeros follow its end.
void ShiftLeft(uint8_t* row, uint32_t count, uint32_t shift) {
  for (uint32_t i = 0; i + 1 < count; ++i) {
    row[i] = static_cast<uint8_t>(row[i] << shift | row[i + 1] >> (8 - shift));
  }
  if (count) row[count - 1] = static_cast<uint8_t>(row[count - 1] << shift);
}

// Reads bytes of a row, and zeros where the rectangle reaches beyond the source's storage.
void ReadBytes(BitmapHandle* source, uint8_t* buffer, uint32_t row, uint32_t column,
               uint32_t count) {
  const uint32_t position =
      source->BytesPerLine * row + vn::ByteOfColumn(source->BitsPerPixel, column);
  const uint32_t held = position < source->DataSize ? source->DataSize - position : 0;
  if (held < count) std::fill(buffer + held, buffer + count, uint8_t{0});
  const uint32_t readable = std::min(held, count);
  if (readable) Vn_GetBitmapRowCol(source, buffer, row, column, readable);
}

VnStatus CopyRows(BitmapHandle* destination, BitmapHandle* source, uint32_t left, uint32_t top) {
  const uint32_t bits = static_cast<uint32_t>(source->BitsPerPixel);
  const uint32_t shift = ShiftOfColumn(left, source->BitsPerPixel);
  const uint32_t count = (static_cast<uint32_t>(destination->Width) * bits + shift + 7) >> 3;
  // Cleared, so that the fill at a row's end is the same in every copy.
  vn::ScratchBuffer<uint8_t> buffer(std::max(count, destination->BytesPerLine), vn::Fill::kZero);
  if (!buffer) return ERR_NO_MEMORY;
  vn::BitmapLock lockSource(source);
  vn::BitmapLock lockDestination(destination);
  for (uint32_t row = 0; row < static_cast<uint32_t>(destination->Height); ++row) {
    ReadBytes(source, buffer.data(), top + row, left, count);
    if (shift) ShiftLeft(buffer.data(), count, shift);
    Vn_PutBitmapRow(destination, buffer.data(), row, destination->BytesPerLine);
  }
  return OK;
}

}  // namespace

VnStatus VN_CALL Vn_CopyBitmapRect(BitmapHandle* destination, BitmapHandle* source, uint32_t left,
                                   uint32_t top, uint32_t width, uint32_t height) {
  if (!source) return ERR_NO_BITMAP;
  VnStatus status = Vn_DupBitmapNewDim(destination, source, width, height, source->BitsPerPixel,
                                       DUP_ALLOCATE | DUP_PALETTE);
  if (status != OK) return status;
  destination->Region = nullptr;  // the source's own stays with the source
  status = vn::CopyRegion(destination, source, static_cast<int32_t>(0u - left),
                          static_cast<int32_t>(0u - top));
  if (status == OK) status = CopyRows(destination, source, left, top);
  if (status != OK) Vn_FreeBitmap(destination);
  return status;
}
