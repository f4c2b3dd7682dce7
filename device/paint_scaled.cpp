// Scaled painting at any depth, by nearest pixel on both axes.
#include "device/band.h"
#include "device/row_output.h"
#include "device/row_source.h"
#include "device/scale_mapping.h"
#include "geometry/scale_row.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

// Source rows fetched and scaled to the paint's width; a row that repeats is kept.
class ScaledRows {
 public:
  ScaledRows(const PaintJob& job, const ScaleMapping& mapping)
      : job_(job),
        source_(job),
        mapping_(mapping),
        bits_(static_cast<uint32_t>(job.bitmap->BitsPerPixel)),
        span_(
            ColumnSpan::Of(mapping.firstColumn, mapping.ColumnOf(mapping.Pixels() - 1) + 1, bits_)),
        bytes_((uint64_t{bits_} * mapping.Pixels() + 31) / 32 * 4),
        fetched_(ZeroedScratch<uint8_t>(span_.bytes)),
        scaled_(ZeroedScratch<uint8_t>(bytes_)) {}

  explicit operator bool() const { return fetched_ && scaled_; }

  // Work row `row` in scaled form, whole pixels of the bitmap's depth.
  const uint8_t* Row(uint32_t row) {
    if (row == held_) return scaled_.data();
    held_ = row;
    source_.Fetch(ScaledStorageRow(job_, row), span_.start, span_.bytes, fetched_.data());
    const Stepper& column = mapping_.column;
    ScaleRow(job_.bitmap->BitsPerPixel, static_cast<uint32_t>(bytes_), mapping_.firstColumn,
             column.quotient, column.accumulator, column.remainder, fetched_.data(), scaled_.data(),
             mapping_.Pixels(), column.divisor, mapping_.expandX);
    return scaled_.data();
  }

 private:
  static constexpr uint32_t kNone = UINT32_MAX;

  const PaintJob& job_;
  RowSource source_;
  const ScaleMapping& mapping_;
  uint32_t bits_;
  ColumnSpan span_;
  uint64_t bytes_;
  ScratchBuffer<uint8_t> fetched_;
  ScratchBuffer<uint8_t> scaled_;
  uint32_t held_ = kNone;
};

// From the bottom device row up, which is the order of a band. The pattern counts from the
// destination's corner.
void PaintRows(const PaintJob& job, const ScaleMapping& mapping, const RowOutput& output,
               ScaledRows* rows, Band* band) {
  const auto patternX =
      static_cast<uint32_t>(mapping.x0) - static_cast<uint32_t>(job.destination.left);
  Stepper step = mapping.row;
  uint32_t row = mapping.firstRow;
  for (int32_t y = mapping.y1; y > mapping.y0;) {
    --y;
    const uint8_t* scaled = rows->Row(row);
    if (output.Direct()) {
      std::memcpy(band->Row(), scaled, band->Stride());
    } else {
      const auto patternY = static_cast<uint32_t>(y) - static_cast<uint32_t>(job.destination.top);
      output.Write(band->Row(), scaled, 0, static_cast<int32_t>(mapping.Pixels()), patternX,
                   static_cast<int32_t>(patternY));
    }
    band->Commit(y);
    row += step.Advance();
  }
  band->Finish();
}

}  // namespace

VnStatus PaintScaled(const PaintJob& job, int32_t deviceBits, int32_t kind) {
  ScaleMapping mapping;
  if (!MapScaled(job, &mapping)) return OK;
  mapping.CarryAtEqualSizes();

  RowOutput output;
  const VnStatus status = output.Prepare(job, deviceBits, kind, mapping.Pixels());
  if (status != OK) return status;
  ScaledRows rows(job, mapping);
  if (!rows) return ERR_NO_MEMORY;
  BitmapInfo256* info = ChooseBandInfo(job.hDC);
  Band band(job,
            {output.Bits(), mapping.x0, static_cast<int32_t>(mapping.Pixels()), 0, mapping.Rows()},
            info);
  if (!band) return ERR_NO_MEMORY;
  band.SetUsage(SetBandColors(info, job.bitmap, output.Bits(), output.Dithers()));
  PaintRows(job, mapping, output, &rows, &band);
  return OK;
}

}  // namespace vn
