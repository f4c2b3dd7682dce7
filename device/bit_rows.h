// Bits of a fetched row, for the renderers that turn 1-bit pictures into ink or gray.
#ifndef VNCORE_DEVICE_BIT_ROWS_H
#define VNCORE_DEVICE_BIT_ROWS_H

#include <bit>
#include <cstdint>

#include "device/row_source.h"
#include "device/scale_mapping.h"
#include "kernel/pixel_format.h"

namespace vn {

// Bits set of columns `first` to `end` - 1.
inline uint32_t CountBits(const uint8_t* row, uint64_t first, uint64_t end) {
  if (first >= end) return 0;
  const uint64_t lastByte = (end - 1) >> 3;
  uint64_t byte = first >> 3;
  const auto endMask = static_cast<uint8_t>(0xFF00u >> (((end - 1) & 7) + 1));
  auto mask = static_cast<uint8_t>(0xFFu >> (first & 7));
  uint32_t count = 0;
  for (; byte < lastByte; ++byte, mask = 0xFF) {
    count += static_cast<uint32_t>(std::popcount(static_cast<uint8_t>(row[byte] & mask)));
  }
  return count +
         static_cast<uint32_t>(std::popcount(static_cast<uint8_t>(row[byte] & mask & endMask)));
}

// Source rows of a scaled 1-bit paint. Columns count from the first of the first byte fetched. The
// last blocks may reach past the width: into the fill bits of the row's last byte, which count as
// they stand, and behind it, where no bit is set.
class BitRows {
 public:
  // `columns`: from the mapping's first column on, how many the loops look at.
  BitRows(const PaintJob& job, const ScaleMapping& mapping, uint64_t columns)
      : job_(job), source_(job), first_(mapping.firstColumn & 7) {
    const uint64_t end = mapping.firstColumn + columns;
    const auto width = static_cast<uint64_t>(job.bitmap->Width);
    span_ = ColumnSpan::Of(mapping.firstColumn, std::min(end, width), 1);
    bytes_ = ZeroedScratch<uint8_t>((first_ + columns + 7) >> 3);
  }
  explicit operator bool() const { return static_cast<bool>(bytes_); }

  // The mapping's first column within a row.
  uint32_t FirstColumn() const { return first_; }

  // Work row `row`, but the last row for rows past the bitmap. With `flip` all bits fetched, fill
  // bits too, are turned over.
  const uint8_t* Read(uint64_t row, bool flip) {
    const auto last = static_cast<uint64_t>(job_.bitmap->Height) - 1;
    const auto storageRow = ScaledStorageRow(job_, static_cast<int64_t>(std::min(row, last)));
    source_.Fetch(storageRow, span_.start, span_.bytes, bytes_.data());
    if (flip) {
      for (uint64_t i = 0; i < span_.bytes; ++i) {
        bytes_[static_cast<size_t>(i)] = static_cast<uint8_t>(~bytes_[static_cast<size_t>(i)]);
      }
    }
    return bytes_.data();
  }

 private:
  const PaintJob& job_;
  RowSource source_;
  uint32_t first_;
  ColumnSpan span_{};
  ScratchBuffer<uint8_t> bytes_;
};

}  // namespace vn

#endif
