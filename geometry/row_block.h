// Runs of whole rows that are worked on in place: where they lie in memory, through a bounded
// buffer in a file.
#ifndef VNCORE_GEOMETRY_ROW_BLOCK_H
#define VNCORE_GEOMETRY_ROW_BLOCK_H

#include <algorithm>

#include <vncore/vncore.h>
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"

namespace vn {

// Usage: Load a run, change rows of it, Store those that are done. The bitmap stays locked. As with
// all inner row calls, a file error shows as wrong pixels and not as a failure.
class RowBlock {
 public:
  // Rows of a file come in runs of up to `bufferBytes`, or one by one where memory is short.
  RowBlock(BitmapHandle* bitmap, uint32_t bufferBytes)
      : bitmap_(bitmap), base_(PixelAddress(*bitmap)) {
    if (base_) return;
    capacity_ = std::clamp(bufferBytes / std::max(bitmap->BytesPerLine, 1u), 1u,
                           std::max(static_cast<uint32_t>(bitmap->Height), 1u));
    buffer_ = ScratchBuffer<uint8_t>(size_t{capacity_} * bitmap->BytesPerLine, Fill::kZero);
    if (buffer_) return;
    capacity_ = 1;
    buffer_ = ScratchBuffer<uint8_t>(bitmap->BytesPerLine, Fill::kZero);
  }

  // False when there is not even memory for one row.
  explicit operator bool() const { return base_ || buffer_; }

  // The most rows of a run.
  uint32_t Capacity() const { return capacity_; }

  void Load(uint32_t first, uint32_t count) {
    first_ = first;
    if (!base_) Vn_GetBitmapRow(bitmap_, buffer_.data(), first, count * bitmap_->BytesPerLine);
  }
  // The same for rows that are all written before they are stored.
  void Begin(uint32_t first) { first_ = first; }
  // A row of the run.
  uint8_t* Row(uint32_t row) const {
    return base_ ? base_ + size_t{row} * bitmap_->BytesPerLine
                 : buffer_.data() + size_t{row - first_} * bitmap_->BytesPerLine;
  }
  // Keeps `count` rows of the run from `first` on.
  void Store(uint32_t first, uint32_t count) {
    if (!base_ && count) {
      Vn_PutBitmapRow(bitmap_, Row(first), first, count * bitmap_->BytesPerLine);
    }
  }

 private:
  BitmapHandle* bitmap_;
  uint8_t* base_;
  ScratchBuffer<uint8_t> buffer_;
  uint32_t capacity_ = UINT32_MAX;
  uint32_t first_ = 0;
};

}  // namespace vn

#endif
