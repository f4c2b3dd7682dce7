// Scaled 1-bit painting as smooth gray: averaged where it shrinks, interpolated where it grows,
// each axis by itself.
#include <algorithm>

#include "device/bit_rows.h"
#include "device/paint_tools.h"

namespace vn {
namespace {

// Source rows brought to the paint's width, as levels 0 to 255. The last even and the last odd row
// are kept, since neighbouring output rows share them.
class LevelRows {
 public:
  LevelRows(const PaintJob& job, const ScaleMapping& mapping, PaintScratch* scratch)
      : mapping_(mapping),
        lastRow_(static_cast<uint64_t>(job.bitmap->Height) - 1),
        rows_(job, mapping, Columns(mapping), scratch),
        levels_{scratch->Zeroed<uint8_t>(PaintSlot::kEvenLevels, mapping.Pixels()),
                scratch->Zeroed<uint8_t>(PaintSlot::kOddLevels, mapping.Pixels())} {}

  explicit operator bool() const { return rows_ && levels_[0] && levels_[1]; }

  // Work row `row`, the last row for rows past the bitmap.
  const uint8_t* Row(uint64_t row) {
    row = std::min(row, lastRow_);
    uint8_t* levels = levels_[row & 1];
    if (held_[row & 1] != row) {
      held_[row & 1] = row;
      const uint8_t* bits = rows_.Read(row, false);
      if (mapping_.expandX) {
        Interpolate(bits, levels);
      } else {
        Average(bits, levels);
      }
    }
    return levels;
  }

 private:
  // Averaging looks at whole blocks, interpolation at the column behind the last.
  static uint64_t Columns(const ScaleMapping& mapping) {
    const uint64_t end = mapping.expandX ? mapping.ColumnOf(mapping.Pixels() - 1) + 2
                                         : mapping.ColumnOf(mapping.Pixels());
    return end - mapping.firstColumn;
  }

  void Average(const uint8_t* bits, uint8_t* levels) const {
    Stepper step = mapping_.column;
    uint32_t column = rows_.FirstColumn();
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t columns = step.Advance();
      levels[i] = static_cast<uint8_t>(255 * CountBits(bits, column, columns) / columns);
      column += columns;
    }
  }

  // Between a column and the next, by the share of each. There is no next one behind the source
  // rectangle's width, which is counted from the bitmap's left edge.
  void Interpolate(const uint8_t* bits, uint8_t* levels) const {
    Stepper step = mapping_.column;
    uint32_t column = rows_.FirstColumn();
    const uint32_t fetchedFrom = mapping_.firstColumn - column;
    const auto lastOfSource = static_cast<uint32_t>(mapping_.sourceWidth) - 1;
    const uint32_t last = lastOfSource > fetchedFrom ? lastOfSource - fetchedFrom : 0;
    // The next column's level is 255 times the accumulator over the divisor, stepped along with it.
    const uint64_t level255 = uint64_t{step.accumulator} * 255,
                   step255 = uint64_t{step.remainder} * 255;
    const uint32_t divisor = step.divisor;
    auto level = static_cast<uint32_t>(level255 / divisor);
    Stepper levelStep{static_cast<uint32_t>(step255 / divisor),
                      static_cast<uint32_t>(step255 % divisor), divisor,
                      static_cast<uint32_t>(level255 % divisor)};
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t set = IndexReader<1>::Get(bits, column);
      const uint32_t nextSet = IndexReader<1>::Get(bits, column + (column < last));
      // Both round down, so together they may lack one; two set columns are white all the same.
      const uint32_t lost = levelStep.accumulator != 0;
      levels[i] = static_cast<uint8_t>(set * (255 - level - lost) + nextSet * level +
                                       (set & nextSet & lost));
      const uint32_t moved = step.Advance();
      column += moved;
      level += levelStep.Advance() - 255 * (moved - step.quotient);
    }
  }

  const ScaleMapping& mapping_;
  uint64_t lastRow_;
  BitRows rows_;
  uint8_t* levels_[2];
  uint64_t held_[2] = {UINT64_MAX, UINT64_MAX};
};

// level * share / divisor for every level; the share is below the divisor.
class ShareTable {
 public:
  ShareTable(uint32_t share, uint32_t divisor) {
    Stepper step = Stepper::Dividing(share, divisor);
    uint32_t part = 0;
    for (uint8_t& entry : parts_) {
      entry = static_cast<uint8_t>(part);
      part += step.Advance();
    }
  }
  uint32_t operator[](uint8_t level) const { return parts_[level]; }

 private:
  uint8_t parts_[256];
};

class GrayScaler {
 public:
  GrayScaler(const PaintJob& job, const ScaleMapping& mapping, bool invert, PaintScratch* scratch)
      : mapping_(mapping),
        step_(mapping.row),
        row_(mapping.firstRow),
        flip_(invert ? 255 : 0),
        rows_(job, mapping, scratch),
        sums_(scratch->Zeroed<uint32_t>(PaintSlot::kSums, mapping.Pixels())) {}

  explicit operator bool() const { return rows_ && sums_; }

  void WriteNext(uint8_t* to) {
    if (mapping_.expandY) {
      Interpolate(to);
    } else {
      Average(to);
    }
  }

 private:
  // A row and the next, each by its share of the destination's height.
  void Interpolate(uint8_t* to) {
    const uint8_t* levels = rows_.Row(row_);
    const uint32_t pixels = mapping_.Pixels();
    const uint32_t nextShare = step_.accumulator;
    if (nextShare) {
      const ShareTable part(step_.divisor - nextShare, step_.divisor);
      const ShareTable nextPart(nextShare, step_.divisor);
      const uint8_t* nextLevels = rows_.Row(row_ + 1);
      for (uint32_t i = 0; i < pixels; ++i)
        to[i] = static_cast<uint8_t>((part[levels[i]] + nextPart[nextLevels[i]]) ^ flip_);
    } else {
      for (uint32_t i = 0; i < pixels; ++i)
        to[i] = static_cast<uint8_t>(levels[i] ^ flip_);
    }
    row_ += step_.Advance();
  }

  void Average(uint8_t* to) {
    const uint32_t rows = step_.Advance();
    const uint32_t pixels = mapping_.Pixels();
    std::fill_n(sums_, pixels, 0u);
    for (uint32_t i = 0; i < rows; ++i)
      AddRow(rows_.Row(row_++));
    for (uint32_t i = 0; i < pixels; ++i)
      to[i] = static_cast<uint8_t>(sums_[i] / rows ^ flip_);
  }

  void AddRow(const uint8_t* levels) {
    const uint32_t pixels = mapping_.Pixels();
    uint32_t* sums = sums_;
    for (uint32_t i = 0; i < pixels; ++i)
      sums[i] += levels[i];
  }

  const ScaleMapping& mapping_;
  Stepper step_;
  uint64_t row_;
  uint32_t flip_;
  LevelRows rows_;
  uint32_t* sums_;
};

}  // namespace

VnStatus PaintBitonalGrayScaled(const PaintJob& job, bool invert, PaintTools* tools) {
  ScaleMapping mapping;
  if (!MapScaled(job, &mapping)) return OK;

  Band band(job, {8, mapping.x0, static_cast<int32_t>(mapping.Pixels()), 0, mapping.Rows()},
            &tools->scratch);
  GrayScaler scaler(job, mapping, invert, &tools->scratch);
  if (!band || !scaler) return ERR_NO_MEMORY;
  tools->table.SetGrays();
  band.Describe(tools->table);
  for (int32_t y = mapping.y1; y > mapping.y0;) {
    --y;
    scaler.WriteNext(band.Row());
    band.Commit(y);
  }
  band.Finish();
  return OK;
}

}  // namespace vn
