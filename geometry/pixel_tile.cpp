#include "geometry/pixel_tile.h"

#include <cstring>

#include "kernel/row_position.h"

namespace vn {

void PixelTile::Place(uint32_t row, uint32_t column, uint32_t rows, uint32_t columns) {
  row_ = row;
  column_ = column;
  rows_ = rows;
  if (base_) {
    stride_ = static_cast<ptrdiff_t>(bitmap_->BytesPerLine);
    at_ = base_ + size_t{row} * bitmap_->BytesPerLine + ByteOfColumn(bitmap_->BitsPerPixel, column);
  } else {
    stride_ = static_cast<ptrdiff_t>(RowBytes(bitmap_->BitsPerPixel, columns));
    at_ = buffer_;
  }
}

void PixelTile::Read() {
  if (base_) return;
  for (uint32_t i = 0; i < rows_; ++i)
    Vn_GetBitmapRowCol(bitmap_, Row(i), row_ + i, column_, static_cast<uint32_t>(stride_));
}

void PixelTile::Write() {
  if (base_) return;
  for (uint32_t i = 0; i < rows_; ++i)
    Vn_PutBitmapRowCol(bitmap_, Row(i), row_ + i, column_, static_cast<uint32_t>(stride_));
}

void ClearRowEnds(BitmapHandle* bitmap) {
  uint8_t* end = PixelAddress(*bitmap);
  if (!end) return;
  const uint32_t used =
      PixelTile::RowBytes(bitmap->BitsPerPixel, static_cast<uint32_t>(bitmap->Width));
  if (used == bitmap->BytesPerLine) return;
  end += used;
  for (int32_t row = 0; row < bitmap->Height; ++row, end += bitmap->BytesPerLine)
    std::memset(end, 0, bitmap->BytesPerLine - used);
}

}  // namespace vn
