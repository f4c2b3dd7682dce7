// The rows of a paint: in memory, be it the bitmap's or a caller's, or through row access.
#ifndef VNCORE_DEVICE_ROW_SOURCE_H
#define VNCORE_DEVICE_ROW_SOURCE_H

#include <algorithm>
#include <cstring>

#include "device/paint_job.h"
#include "kernel/row_position.h"

namespace vn {

class RowSource {
 public:
  explicit RowSource(const PaintJob& job) : bitmap_(job.bitmap), rows_(job.callerRows) {
    if (!rows_.rows) rows_ = {PixelAddress(*bitmap_), 0, bitmap_->Height};
  }

  // Copies `bytes` bytes of a storage row, from the byte that holds pixel `column` on. What lies
  // past the row's end is not fetched, and neither is a row that does not exist: `to` then keeps
  // what it held, as after a file error.
  void Fetch(int64_t row, uint32_t column, uint64_t bytes, uint8_t* to) const {
    const uint64_t start = StartOf(column);
    if (start >= bitmap_->BytesPerLine) return;
    const auto count = static_cast<uint32_t>(std::min(bytes, bitmap_->BytesPerLine - start));
    if (rows_.rows) {
      if (const uint8_t* found = Find(row)) std::memcpy(to, found + start, count);
    } else if (row >= 0 && row < bitmap_->Height) {
      Vn_GetBitmapRowCol(bitmap_, to, static_cast<uint32_t>(row), column, count);
    }
  }

  // The same of `count` rows from `row` on, to places `stride` bytes apart.
  void FetchRows(int64_t row, uint32_t count, uint32_t column, uint64_t bytes, uint8_t* to,
                 ptrdiff_t stride) const {
    const uint8_t* from = Find(row);
    const uint64_t start = StartOf(column);
    if (!from || !Find(row + count - 1) || start + bytes > bitmap_->BytesPerLine) {
      for (; count; --count, ++row, to += stride)
        Fetch(row, column, bytes, to);
      return;
    }
    const auto size = static_cast<size_t>(bytes);
    for (from += start; count; --count, from += bitmap_->BytesPerLine, to += stride) {
      if (size == 1) {
        *to = *from;
      } else {
        std::memcpy(to, from, size);
      }
    }
  }

  // The same bytes to be read where they lie, or in `buffer` when they do not lie in memory whole.
  const uint8_t* Read(int64_t row, uint32_t column, uint64_t bytes, uint8_t* buffer) const {
    const uint8_t* found = Find(row);
    const uint64_t start = StartOf(column);
    if (found && start + bytes <= bitmap_->BytesPerLine) return found + start;
    Fetch(row, column, bytes, buffer);
    return buffer;
  }

  // Whole rows `row`, `row` + 1 and so on, `count` of them, where they lie in memory at `stride` bytes
  // from each other; null where they do not.
  const uint8_t* Block(int64_t row, uint32_t count, uint32_t stride) const {
    return stride == bitmap_->BytesPerLine && Find(row + count - 1) ? Find(row) : nullptr;
  }

 private:
  uint64_t StartOf(uint32_t column) const {
    return uint64_t{column} * static_cast<uint32_t>(bitmap_->BitsPerPixel) / 8;
  }

  // A row in memory, or null.
  const uint8_t* Find(int64_t row) const {
    const int64_t index = row - rows_.first;
    if (!rows_.rows || index < 0 || index >= rows_.count) return nullptr;
    return rows_.rows + static_cast<size_t>(index) * bitmap_->BytesPerLine;
  }

  BitmapHandle* bitmap_;
  CallerRows rows_;  // the caller's, or the bitmap's own where its pixels lie in memory
};

// A run of columns as whole bytes.
struct ColumnSpan {
  uint32_t start;  // column of the first pixel of the first byte
  uint64_t bytes;

  // `first` to `end` - 1 at `bits` per pixel.
  static ColumnSpan Of(uint32_t first, uint64_t end, uint32_t bits) {
    const uint32_t start = bits < 8 ? first & ~(8 / bits - 1) : first;
    return {start, ((end - start) * bits + 7) >> 3};
  }
};

}  // namespace vn

#endif
