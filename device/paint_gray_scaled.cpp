// Scaled 1-bit painting as smooth gray: averaged where it shrinks, interpolated where it grows,
// each axis by itself.
#include <algorithm>
#include <bit>
#include <optional>

#include "device/bit_rows.h"
#include "device/grown_levels.h"
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
        levels_{scratch->Zeroed<uint8_t>(PaintSlot::kEvenLevels, Room(mapping)),
                scratch->Zeroed<uint8_t>(PaintSlot::kOddLevels, Room(mapping))} {
    if (!mapping.expandX) {
      blocks_.emplace(mapping.column, rows_.FirstColumn(), mapping.Pixels(), true, LevelOf);
    } else if (mapping.Rows() >= kManyRows) {
      const uint64_t columns = rows_.FirstColumn() + Columns(mapping);
      if (columns > INT32_MAX) return;
      grown_.emplace(mapping.column, rows_.FirstColumn(), static_cast<uint32_t>(columns),
                     LastColumn(), mapping.Pixels(), mapping.Rows());
    }
  }

  explicit operator bool() const { return rows_ && levels_[0] && levels_[1]; }

  // Work row `row`, the last row for rows past the bitmap.
  const uint8_t* Row(uint64_t row) {
    row = std::min(row, lastRow_);
    uint8_t* levels = levels_[row & 1];
    if (held_[row & 1] != row) {
      held_[row & 1] = row;
      const uint8_t* bits = rows_.Read(row, false);
      if (grown_ && *grown_) {
        grown_->Write(bits, levels);
      } else if (mapping_.expandX) {
        Interpolate(bits, levels);
      } else if (*blocks_) {
        blocks_->Write(bits, levels);
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

  static uint64_t Room(const ScaleMapping& mapping) {
    return uint64_t{mapping.Pixels()} + kBlockSlack;
  }
  static uint8_t LevelOf(uint32_t ones, uint32_t columns) {
    return static_cast<uint8_t>(255 * ones / columns);
  }

  void Average(const uint8_t* bits, uint8_t* levels) const {
    Stepper step = mapping_.column;
    uint32_t column = rows_.FirstColumn();
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t columns = step.Advance();
      levels[i] = LevelOf(CountBits(bits, column, columns), columns);
      column += columns;
    }
  }

  // The column behind which there is no next one: that of the source rectangle's width, which is
  // counted from the bitmap's left edge.
  uint32_t LastColumn() const {
    const uint32_t fetchedFrom = mapping_.firstColumn - rows_.FirstColumn();
    const auto lastOfSource = static_cast<uint32_t>(mapping_.sourceWidth) - 1;
    return lastOfSource > fetchedFrom ? lastOfSource - fetchedFrom : 0;
  }

  // Between a column and the next, by the share of each.
  void Interpolate(const uint8_t* bits, uint8_t* levels) const {
    ShareSteps steps(mapping_.column);
    uint32_t column = rows_.FirstColumn();
    const uint32_t last = LastColumn();
    const uint32_t pixels = mapping_.Pixels();
    for (uint32_t i = 0; i < pixels; ++i) {
      const uint32_t set = IndexReader<1>::Get(bits, column);
      const uint32_t nextSet = IndexReader<1>::Get(bits, column + (column < last));
      levels[i] =
          static_cast<uint8_t>(set & nextSet ? 255 : set * steps.Own() + nextSet * steps.Next());
      column += steps.Advance();
    }
  }

  const ScaleMapping& mapping_;
  uint64_t lastRow_;
  BitRows rows_;
  static constexpr uint32_t kManyRows = 16;  // that repay what is laid down for all of them
  std::optional<BitBlocks> blocks_;          // where rows are averaged
  std::optional<GrownLevels> grown_;         // where many rows are interpolated
  uint8_t* levels_[2];
  uint64_t held_[2] = {UINT64_MAX, UINT64_MAX};
};

// level * share / divisor for every level; the share is below the divisor.
class ShareTable {
 public:
  ShareTable(uint32_t share, uint32_t divisor)
      : factor_(static_cast<uint16_t>((uint64_t{share} << 16) / divisor + 1)) {
    Stepper step = Stepper::Dividing(share, divisor);
    uint32_t part = 0;
    for (uint32_t level = 0; level < 256; ++level) {
      parts_[level] = static_cast<uint8_t>(part);
      part += step.Advance();
      multiplies_ = multiplies_ && Product(static_cast<uint8_t>(level)) == parts_[level];
    }
  }
  uint32_t operator[](uint8_t level) const { return parts_[level]; }
  // Whether Product gives the same for every level.
  bool multiplies() const { return multiplies_; }
  uint16_t Product(uint8_t level) const {
    return static_cast<uint16_t>(uint32_t{level} * factor_ >> 16);
  }

 private:
  uint16_t factor_;
  bool multiplies_ = true;
  uint8_t parts_[256];
};

// Sums of levels divided by their number, and flipped. A quotient of numbers below 2^24, rounded to
// the nearest single-precision number, never reaches the next whole one.
template <class Sum>
void WriteMeans(const Sum* sums, uint32_t pixels, uint32_t rows, uint32_t flip, uint8_t* to) {
  constexpr uint32_t kMostExact = (1 << 24) / 256;
  if (std::has_single_bit(rows)) {
    const int shift = std::countr_zero(rows);
    for (uint32_t i = 0; i < pixels; ++i)
      to[i] = static_cast<uint8_t>(sums[i] >> shift ^ flip);
  } else if (rows <= kMostExact) {
    const auto divisor = static_cast<float>(rows);
    for (uint32_t i = 0; i < pixels; ++i) {
      const auto sum = static_cast<float>(static_cast<int32_t>(sums[i]));
      to[i] =
          static_cast<uint8_t>(static_cast<uint32_t>(static_cast<int32_t>(sum / divisor)) ^ flip);
    }
  } else {
    for (uint32_t i = 0; i < pixels; ++i)
      to[i] = static_cast<uint8_t>(sums[i] / rows ^ flip);
  }
}

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
    const uint32_t pixels = mapping_.Pixels(), flip = flip_;
    const uint32_t nextShare = step_.accumulator;
    if (nextShare) {
      const ShareTable part(step_.divisor - nextShare, step_.divisor);
      const ShareTable nextPart(nextShare, step_.divisor);
      const uint8_t* nextLevels = rows_.Row(row_ + 1);
      if (part.multiplies() && nextPart.multiplies()) {
        for (uint32_t i = 0; i < pixels; ++i) {
          to[i] = static_cast<uint8_t>((part.Product(levels[i]) + nextPart.Product(nextLevels[i])) ^
                                       flip);
        }
      } else {
        for (uint32_t i = 0; i < pixels; ++i)
          to[i] = static_cast<uint8_t>((part[levels[i]] + nextPart[nextLevels[i]]) ^ flip);
      }
    } else {
      for (uint32_t i = 0; i < pixels; ++i)
        to[i] = static_cast<uint8_t>(levels[i] ^ flip);
    }
    row_ += step_.Advance();
  }

  void Average(uint8_t* to) {
    const uint32_t rows = step_.Advance();
    if (rows <= UINT16_MAX / 255) {
      AverageIn(reinterpret_cast<uint16_t*>(sums_), rows, to);
    } else {
      AverageIn(sums_, rows, to);
    }
  }

  template <class Sum>
  void AverageIn(Sum* sums, uint32_t rows, uint8_t* to) {
    const uint32_t pixels = mapping_.Pixels();
    std::copy_n(rows_.Row(row_++), pixels, sums);
    for (uint32_t row = 1; row < rows; ++row) {
      const uint8_t* const levels = rows_.Row(row_++);
      for (uint32_t i = 0; i < pixels; ++i)
        sums[i] = static_cast<Sum>(sums[i] + levels[i]);
    }
    WriteMeans(sums, pixels, rows, flip_, to);
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
