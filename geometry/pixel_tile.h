// Rectangles of a bitmap's pixels: where they lie in memory, through a buffer in a file.
#ifndef VNCORE_GEOMETRY_PIXEL_TILE_H
#define VNCORE_GEOMETRY_PIXEL_TILE_H

#include <vncore/vncore.h>
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"

namespace vn {

// Columns begin at a whole byte and lie within the bitmap, which stays locked. As with all inner
// row calls, a file error shows as wrong pixels and not as a failure.
class PixelTile {
 public:
  // Bytes of a row of `columns` pixels.
  static uint32_t RowBytes(int32_t bitsPerPixel, uint32_t columns) {
    return static_cast<uint32_t>((uint64_t{columns} * static_cast<uint32_t>(bitsPerPixel) + 7) / 8);
  }

  explicit PixelTile(BitmapHandle* bitmap) : bitmap_(bitmap), base_(PixelAddress(*bitmap)) {}

  bool InMemory() const { return base_ != nullptr; }
  // For a bitmap in a file: a buffer for the largest tile, from the heap or the caller's own.
  bool Allocate(size_t bytes) {
    owned_ = ScratchBuffer<uint8_t>(bytes, Fill::kZero);
    buffer_ = owned_.data();
    return buffer_ != nullptr;
  }
  void UseBuffer(uint8_t* buffer) { buffer_ = buffer; }

  // Goes to a rectangle. Of a file nothing is read yet.
  void Place(uint32_t row, uint32_t column, uint32_t rows, uint32_t columns);
  void Read();
  void Write();

  uint8_t* Row(uint32_t row) const { return at_ + stride_ * static_cast<ptrdiff_t>(row); }
  ptrdiff_t Stride() const { return stride_; }

 private:
  BitmapHandle* bitmap_;
  uint8_t* base_;
  ScratchBuffer<uint8_t> owned_;
  uint8_t* buffer_ = nullptr;
  uint8_t* at_ = nullptr;
  ptrdiff_t stride_ = 0;
  uint32_t row_ = 0, column_ = 0, rows_ = 0;
};

// Zeroes what lies behind the pixels of each row, which new memory does not do everywhere: results
// are the same in every storage.
void ClearRowEnds(BitmapHandle* bitmap);

}  // namespace vn

#endif
