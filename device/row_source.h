// The rows of a paint: from the bitmap through row access, or out of a caller's buffer.
#ifndef VNCORE_DEVICE_ROW_SOURCE_H
#define VNCORE_DEVICE_ROW_SOURCE_H

#include <algorithm>
#include <cstring>

#include "device/paint_job.h"

namespace vn {

class RowSource {
 public:
  explicit RowSource(const PaintJob& job) : bitmap_(job.bitmap), rows_(job.callerRows) {}

  // Copies `bytes` bytes of a storage row, from the byte that holds pixel `column` on. What lies
  // past the row's end is not fetched, and neither is a row that does not exist: `to` then keeps
  // what it held, as after a file error.
  void Fetch(int64_t row, uint32_t column, uint64_t bytes, uint8_t* to) const {
    const uint64_t start = uint64_t{column} * static_cast<uint32_t>(bitmap_->BitsPerPixel) / 8;
    if (start >= bitmap_->BytesPerLine) return;
    const auto count = static_cast<uint32_t>(std::min(bytes, bitmap_->BytesPerLine - start));
    if (rows_.rows) {
      const int64_t index = row - rows_.first;
      if (index < 0 || index >= rows_.count) return;
      std::memcpy(to, rows_.rows + static_cast<size_t>(index) * bitmap_->BytesPerLine + start,
                  count);
    } else if (row >= 0 && row < bitmap_->Height) {
      Vn_GetBitmapRowCol(bitmap_, to, static_cast<uint32_t>(row), column, count);
    }
  }

 private:
  BitmapHandle* bitmap_;
  CallerRows rows_;
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
