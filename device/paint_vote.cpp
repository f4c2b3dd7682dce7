// Scaled 1-bit painting by vote: a pixel turns to ink on far less ink than half of its area, so
// that thin lines outlive shrinking.
#include <algorithm>
#include <cmath>

#include "device/bit_rows.h"
#include "device/paint_tools.h"
#include "device/scaled_rows.h"

namespace vn {
namespace {

uint32_t IntegerSquareRoot(uint64_t value) {
  auto root = static_cast<uint64_t>(std::sqrt(static_cast<double>(value)));
  while (root * root > value)
    --root;
  while ((root + 1) * (root + 1) <= value)
    ++root;
  return static_cast<uint32_t>(root);
}

// Ink pixels that make ink of a block of `area` pixels.
uint32_t InkThreshold(uint64_t area) {
  uint32_t threshold = IntegerSquareRoot(area);
  if (threshold < 5) --threshold;
  return threshold < 2 ? 1 : threshold;
}

class InkVote {
 public:
  InkVote(const PaintJob& job, const ScaleMapping& mapping, bool invert, PaintScratch* scratch)
      : mapping_(mapping),
        height_(static_cast<uint64_t>(job.bitmap->Height)),
        invert_(invert),
        across_(std::max(mapping.column.quotient, 1u)),
        down_(std::max(mapping.row.quotient, 1u)),
        threshold_(InkThreshold(uint64_t{across_} * down_)),
        rows_(job, mapping, mapping.ColumnOf(mapping.Pixels() - 1) - mapping.firstColumn + across_,
              scratch),
        blocks_(mapping.column, rows_.FirstColumn(), mapping.Pixels(), false,
                [](uint32_t ones, uint32_t) { return static_cast<uint8_t>(ones); }),
        counts_(scratch->Zeroed<uint32_t>(PaintSlot::kSums, Room())) {}

  explicit operator bool() const { return rows_ && counts_; }

  // The output row for work row `row`, written to `to`.
  void Write(uint64_t row, uint8_t* to, uint32_t bytes) {
    std::fill_n(to, bytes, static_cast<uint8_t>(invert_ ? 0 : 0xFF));
    if (blocks_ && uint64_t{across_} * down_ <= INT16_MAX) {
      WriteByBlocks(row, to);
    } else {
      WriteByPixels(row, to);
    }
  }

 private:
  uint64_t Room() const { return uint64_t{mapping_.Pixels()} + kBlockSlack; }

  // Every second row votes, and with more than one beyond the pixel's own block.
  template <class Count>
  void ForVoters(uint64_t row, const Count& count) {
    uint64_t cursor = std::min(row, height_ - 1);
    for (uint32_t i = 0; i < down_; ++i) {
      count(rows_.Read(cursor, !invert_));
      ++cursor;
      cursor = cursor < height_ - 1 ? cursor + 1 : height_ - 1;
    }
  }

  void WriteByPixels(uint64_t row, uint8_t* to) {
    const uint32_t pixels = mapping_.Pixels();
    std::fill_n(counts_, pixels, 0u);
    ForVoters(row, [&](const uint8_t* bits) { Count(bits); });
    const uint32_t ink = invert_ ? 1 : 0;
    PixelWriter<1> out(to);
    for (uint32_t i = 0; i < pixels; ++i)
      out.Put(ink ^ (counts_[i] < threshold_));
    out.Finish();
  }

  // Sums of 16 bits, and behind them the ones of a row's blocks.
  void WriteByBlocks(uint64_t row, uint8_t* to) {
    const uint32_t pixels = mapping_.Pixels();
    auto* const sums = reinterpret_cast<uint16_t*>(counts_);
    auto* const ones = reinterpret_cast<uint8_t*>(sums + Room());
    std::fill_n(sums, Room(), uint16_t{0});
    ForVoters(row, [&](const uint8_t* bits) {
      blocks_.Write(bits, ones);
      for (uint32_t i = 0; i < pixels; ++i)
        sums[i] = static_cast<uint16_t>(sums[i] + ones[i]);
    });
    const uint32_t bytes = (pixels + 7) / 8;
    WriteVotes(sums, threshold_, bytes, to);
    if (invert_) return;
    for (uint32_t i = 0; i < bytes; ++i)
      to[i] = static_cast<uint8_t>(~to[i]);
  }

  void Count(const uint8_t* bits) {
    Stepper step = mapping_.column;
    uint32_t column = rows_.FirstColumn();
    const uint32_t pixels = mapping_.Pixels();
    if (across_ == 1) {
      for (uint32_t i = 0; i < pixels; ++i, column += step.Advance())
        counts_[i] += IndexReader<1>::Get(bits, column);
    } else {
      for (uint32_t i = 0; i < pixels; ++i, column += step.Advance())
        counts_[i] += CountBits(bits, column, across_);
    }
  }

  const ScaleMapping& mapping_;
  uint64_t height_;
  bool invert_;
  uint32_t across_, down_;  // block of source pixels that votes
  uint32_t threshold_;
  BitRows rows_;
  BitBlocks blocks_;
  uint32_t* counts_;
};

}  // namespace

VnStatus PaintBitonalVote(const PaintJob& job, bool invert, PaintTools* tools) {
  ScaleMapping mapping;
  if (!MapScaled(job, &mapping)) return OK;
  mapping.CarryAtEqualSizes();

  Band band(job, {1, mapping.x0, static_cast<int32_t>(mapping.Pixels()), 0, mapping.Rows()},
            &tools->scratch);
  InkVote vote(job, mapping, invert, &tools->scratch);
  if (!band || !vote) return ERR_NO_MEMORY;
  tools->table.SetInks(job);
  band.Describe(tools->table);
  SendScaledRows(mapping, &band, [&](uint32_t row) { vote.Write(row, band.Row(), band.Stride()); });
  tools->table.Restore();
  return OK;
}

}  // namespace vn
