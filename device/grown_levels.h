// Rows of bits as levels of a larger width, interpolated, with what all rows share worked out once.
#ifndef VNCORE_DEVICE_GROWN_LEVELS_H
#define VNCORE_DEVICE_GROWN_LEVELS_H

#include "geometry/row_scaler.h"
#include "kernel/scratch_buffer.h"
#include "kernel/stepper.h"

namespace vn {

// Each pixel lies between a column and the next and has a share of both: a level for either of them
// that is set alone. Two that are set are white: each share is rounded down, and together they may
// lack one.
class ShareSteps {
 public:
  explicit ShareSteps(const Stepper& columns)
      : columns_(columns), level_(LevelOf(columns.accumulator, columns.divisor)) {
    const uint64_t step = uint64_t{columns.remainder} * 255;
    levels_ = {static_cast<uint32_t>(step / columns.divisor),
               static_cast<uint32_t>(step % columns.divisor), columns.divisor,
               static_cast<uint32_t>(uint64_t{columns.accumulator} * 255 % columns.divisor)};
  }
  uint32_t Own() const { return 255 - level_ - (levels_.accumulator != 0); }
  uint32_t Next() const { return level_; }
  // To the next pixel. Returns the columns moved.
  uint32_t Advance() {
    const uint32_t moved = columns_.Advance();
    level_ += levels_.Advance() - 255 * (moved - columns_.quotient);
    return moved;
  }

 private:
  static uint32_t LevelOf(uint32_t part, uint32_t divisor) {
    return static_cast<uint32_t>(uint64_t{part} * 255 / divisor);
  }

  Stepper columns_, levels_{};
  uint32_t level_;  // 255 times the accumulator of the columns over the divisor
};

// Test it: it is empty when memory failed.
class GrownLevels {
 public:
  // Pixels step from column `first` of a row of `columns` on. From column `last` on the next column
  // is the same. `rows`: how many will come.
  GrownLevels(const Stepper& step, uint32_t first, uint32_t columns, uint32_t last, uint32_t pixels,
              uint32_t rows);

  explicit operator bool() const { return shares_ && nextShares_ && spread_ && sets_ && nextSets_; }

  void Write(const uint8_t* bits, uint8_t* levels) const;

 private:
  uint32_t first_, columns_, last_, pixels_;
  RowScaler scaler_;
  ScratchBuffer<uint8_t> shares_, nextShares_;  // of each pixel
  ScratchBuffer<uint8_t> spread_;               // a row, a byte for each column
  ScratchBuffer<uint8_t> sets_, nextSets_;      // of each pixel, 0xFF where its columns are set
};

}  // namespace vn

#endif
