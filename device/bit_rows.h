// Bits of a fetched row, for the renderers that turn 1-bit pictures into ink or gray.
#ifndef VNCORE_DEVICE_BIT_ROWS_H
#define VNCORE_DEVICE_BIT_ROWS_H

#include <cstdint>

#include "device/bit_blocks.h"
#include "device/paint_scratch.h"
#include "device/row_source.h"
#include "device/scale_mapping.h"
#include "kernel/pixel_format.h"

namespace vn {

// Ones of a word, by sums of neighbouring fields. Not every processor that runs this has an
// instruction for it, and a library call for each pixel costs more.
inline uint32_t CountOnes(uint32_t word) {
  word -= word >> 1 & 0x55555555;
  word = (word & 0x33333333) + (word >> 2 & 0x33333333);
  word = (word + (word >> 4)) & 0x0F0F0F0F;
  return word * 0x01010101 >> 24;
}

// Bits set of `count` columns, at least one, from column `first` on. Reads words: behind the last
// column's byte lie 3 bytes of no matter.
inline uint32_t CountBits(const uint8_t* row, uint32_t first, uint32_t count) {
  // A word holds so many whichever bit of its first byte is the first.
  constexpr uint32_t kAtOnce = 25;
  const auto word = [&] {
    const uint8_t* at = row + (first >> 3);
    const uint32_t bits =
        uint32_t{at[0]} << 24 | uint32_t{at[1]} << 16 | uint32_t{at[2]} << 8 | at[3];
    return bits << (first & 7);
  };
  uint32_t sum = 0;
  for (; count > kAtOnce; count -= kAtOnce, first += kAtOnce)
    sum += CountOnes(word() >> (32 - kAtOnce));
  return sum + CountOnes(word() >> (32 - count));
}

// Source rows of a scaled 1-bit paint. Columns count from the first of the first byte fetched. The
// last blocks may reach past the width: into the fill bits of the row's last byte, which count as
// they stand, and behind it, where no bit is set.
class BitRows {
 public:
  // `columns`: from the mapping's first column on, how many the loops look at.
  BitRows(const PaintJob& job, const ScaleMapping& mapping, uint64_t columns, PaintScratch* scratch)
      : job_(job), source_(job), first_(mapping.firstColumn & 7) {
    const uint64_t end = mapping.firstColumn + columns;
    const auto width = static_cast<uint64_t>(job.bitmap->Width);
    span_ = ColumnSpan::Of(mapping.firstColumn, std::min(end, width), 1);
    bytes_ =
        scratch->Zeroed<uint8_t>(PaintSlot::kFetched, ((first_ + columns + 7) >> 3) + kWindowSlack);
  }
  explicit operator bool() const { return bytes_; }

  // The mapping's first column within a row.
  uint32_t FirstColumn() const { return first_; }

  // Work row `row`, but the last row for rows past the bitmap. With `flip` all bits fetched, fill
  // bits too, are turned over.
  const uint8_t* Read(uint64_t row, bool flip) {
    const auto last = static_cast<uint64_t>(job_.bitmap->Height) - 1;
    const auto storageRow = ScaledStorageRow(job_, static_cast<int64_t>(std::min(row, last)));
    source_.Fetch(storageRow, span_.start, span_.bytes, bytes_);
    if (flip) {
      uint8_t* const bytes = bytes_;
      for (size_t i = 0, end = static_cast<size_t>(span_.bytes); i < end; ++i)
        bytes[i] = static_cast<uint8_t>(~bytes[i]);
    }
    return bytes_;
  }

 private:
  const PaintJob& job_;
  RowSource source_;
  uint32_t first_;
  ColumnSpan span_{};
  uint8_t* bytes_;
};

}  // namespace vn

#endif
