// Whole rows of a locked bitmap for the library's own row loops: in place where the pixels lie in
// memory, through the caller's row buffer where they lie in a file.
#ifndef VNCORE_KERNEL_ROW_VIEW_H
#define VNCORE_KERNEL_ROW_VIEW_H

#include <vncore/vncore.h>
#include "kernel/row_position.h"

namespace vn {

// The bitmap stays locked while a view of it is used. `buffer` holds BytesPerLine bytes. As with
// all inner row calls, a file error shows as wrong pixels and not as a failure.
class RowView {
 public:
  RowView(BitmapHandle* bitmap, uint8_t* buffer)
      : bitmap_(bitmap), base_(PixelAddress(*bitmap)), buffer_(buffer) {}

  // True when rows need no buffer.
  bool InPlace() const { return base_ != nullptr; }

  // A row to read, valid until the next call.
  const uint8_t* Read(uint32_t row) {
    if (base_) return base_ + size_t{bitmap_->BytesPerLine} * row;
    Vn_GetBitmapRow(bitmap_, buffer_, row, bitmap_->BytesPerLine);
    return buffer_;
  }

  // Where to write a row. All BytesPerLine bytes are to be written before Store.
  uint8_t* Target(uint32_t row) {
    return base_ ? base_ + size_t{bitmap_->BytesPerLine} * row : buffer_;
  }
  void Store(uint32_t row) {
    if (!base_) Vn_PutBitmapRow(bitmap_, buffer_, row, bitmap_->BytesPerLine);
  }

 private:
  BitmapHandle* bitmap_;
  uint8_t* base_;
  uint8_t* buffer_;
};

}  // namespace vn

#endif
