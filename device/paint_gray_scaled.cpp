// Scaled 1-bit painting as smooth gray: averaged where it shrinks, interpolated where it grows,
// each axis by itself.
#include <algorithm>

#include "device/band.h"
#include "device/bit_rows.h"

namespace vn {
namespace {

// Source rows brought to the paint's width, as levels 0 to 255. The last even and the last odd row
// are kept, since neighbouring output rows share them.
class LevelRows {
 public:
  LevelRows(const PaintJob& job, const ScaleMapping& mapping)
      : mapping_(mapping),
        lastRow_(static_cast<uint64_t>(job.bitmap->Height) - 1),
        rows_(job, mapping, Columns(mapping)),
        levels_{ZeroedScratch<uint8_t>(mapping.Pixels()),
                ZeroedScratch<uint8_t>(mapping.Pixels())} {}

  explicit operator bool() const { return rows_ && levels_[0] && levels_[1]; }

  // Work row `row`, the last row for rows past the bitmap.
  const uint8_t* Row(uint64_t row) {
    row = std::min(row, lastRow_);
    const ScratchBuffer<uint8_t>& levels = levels_[row & 1];
    if (held_[row & 1] != row) {
      held_[row & 1] = row;
      const uint8_t* bits = rows_.Read(row, false);
      if (mapping_.expandX) {
        Interpolate(bits, levels.data());
      } else {
        Average(bits, levels.data());
      }
    }
    return levels.data();
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
    uint64_t column = rows_.FirstColumn();
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t columns = step.Advance();
      const uint32_t sum = 255 * CountBits(bits, column, column + columns);
      levels[i] = static_cast<uint8_t>(sum ? sum / columns : 0);
      column += columns;
    }
  }

  // Between a column and the next, by the share of each. There is no next one behind the source
  // rectangle's width, which is counted from the bitmap's left edge.
  void Interpolate(const uint8_t* bits, uint8_t* levels) const {
    Stepper step = mapping_.column;
    uint64_t column = rows_.FirstColumn();
    const uint64_t fetchedFrom = mapping_.firstColumn - column;
    const auto lastOfSource = static_cast<uint64_t>(mapping_.sourceWidth) - 1;
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const bool set = IndexReader<1>::Get(bits, column);
      const bool last = fetchedFrom + column >= lastOfSource;
      const bool nextSet = last ? set : IndexReader<1>::Get(bits, column + 1);
      const uint32_t share =
          (set ? step.divisor - step.accumulator : 0) + (nextSet ? step.accumulator : 0);
      levels[i] = share == step.divisor ? 255 : static_cast<uint8_t>(share * 255 / step.divisor);
      column += step.Advance();
    }
  }

  const ScaleMapping& mapping_;
  uint64_t lastRow_;
  BitRows rows_;
  ScratchBuffer<uint8_t> levels_[2];
  uint64_t held_[2] = {UINT64_MAX, UINT64_MAX};
};

class GrayScaler {
 public:
  GrayScaler(const PaintJob& job, const ScaleMapping& mapping, bool invert)
      : mapping_(mapping),
        step_(mapping.row),
        row_(mapping.firstRow),
        flip_(invert ? 255 : 0),
        rows_(job, mapping),
        sums_(ZeroedScratch<uint32_t>(mapping.Pixels())) {}

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
    const uint32_t nextShare = step_.accumulator;
    AddShare<true>(rows_.Row(row_), step_.divisor - nextShare);
    if (nextShare) AddShare<false>(rows_.Row(row_ + 1), nextShare);
    Emit(to, 1);
    row_ += step_.Advance();
  }

  void Average(uint8_t* to) {
    const uint32_t rows = step_.Advance();
    AddShare<true>(rows_.Row(row_), step_.divisor);
    for (uint32_t i = 1; i < rows; ++i)
      AddShare<false>(rows_.Row(row_ + i), step_.divisor);
    Emit(to, rows);
    row_ += rows;
  }

  template <bool First>
  void AddShare(const uint8_t* levels, uint32_t share) {
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t level = levels[i];
      const uint32_t part = level && share != step_.divisor ? level * share / step_.divisor : level;
      sums_[i] = First ? part : sums_[i] + part;
    }
  }

  void Emit(uint8_t* to, uint32_t rows) const {
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t level = rows == 1 ? sums_[i] : sums_[i] / rows;
      to[i] = static_cast<uint8_t>(level ^ flip_);
    }
  }

  const ScaleMapping& mapping_;
  Stepper step_;
  uint64_t row_;
  uint32_t flip_;
  LevelRows rows_;
  ScratchBuffer<uint32_t> sums_;
};

}  // namespace

VnStatus PaintBitonalGrayScaled(const PaintJob& job, bool invert) {
  ScaleMapping mapping;
  if (!MapScaled(job, &mapping)) return OK;

  BitmapInfo256* info = &CurrentThreadSettings().PaintInfo;
  Band band(job, {8, mapping.x0, static_cast<int32_t>(mapping.Pixels()), 0, mapping.Rows()}, info);
  GrayScaler scaler(job, mapping, invert);
  if (!band || !scaler) return ERR_NO_MEMORY;
  band.SetUsage(SetBandGrays(info));
  for (int32_t y = mapping.y1; y > mapping.y0;) {
    --y;
    scaler.WriteNext(band.Row());
    band.Commit(y);
  }
  band.Finish();
  return OK;
}

}  // namespace vn
