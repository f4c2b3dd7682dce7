// Scaled painting at any depth, by nearest pixel on both axes.
#include "device/band_rows.h"
#include "device/paint_tools.h"
#include "device/row_source.h"
#include "device/scaled_rows.h"
#include "geometry/row_scaler.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

// Source rows scaled to the paint's width.
class ScaledRows {
 public:
  ScaledRows(const PaintJob& job, const ScaleMapping& mapping, PaintScratch* scratch)
      : job_(job),
        source_(job),
        mapping_(mapping),
        bits_(static_cast<uint32_t>(job.bitmap->BitsPerPixel)),
        span_(
            ColumnSpan::Of(mapping.firstColumn, mapping.ColumnOf(mapping.Pixels() - 1) + 1, bits_)),
        scaler_(ScaleOf(job, mapping, span_), mapping.Rows()),
        fetched_(scratch->Zeroed<uint8_t>(PaintSlot::kFetched, span_.bytes)) {}

  explicit operator bool() const { return fetched_; }

  // Bytes of a scaled row.
  uint64_t Bytes() const { return BytesOf(bits_, mapping_); }

  // Writes work row `row` in scaled form, whole pixels of the bitmap's depth.
  void Scale(uint32_t row, uint8_t* to) const {
    const uint8_t* from =
        source_.Read(ScaledStorageRow(job_, row), span_.start, span_.bytes, fetched_);
    scaler_.Scale(from, to);
  }

 private:
  static uint64_t BytesOf(uint32_t bits, const ScaleMapping& mapping) {
    return (uint64_t{bits} * mapping.Pixels() + 31) / 32 * 4;
  }
  static RowScale ScaleOf(const PaintJob& job, const ScaleMapping& mapping,
                          const ColumnSpan& span) {
    const auto bits = static_cast<uint32_t>(job.bitmap->BitsPerPixel);
    return {job.bitmap->BitsPerPixel, mapping.column,
            mapping.firstColumn,      static_cast<uint32_t>(span.bytes * 8 / bits),
            mapping.Pixels(),         static_cast<uint32_t>(BytesOf(bits, mapping)),
            mapping.expandX};
  }

  const PaintJob& job_;
  RowSource source_;
  const ScaleMapping& mapping_;
  uint32_t bits_;
  ColumnSpan span_;
  RowScaler scaler_;
  uint8_t* fetched_;
};

// Rows that are worked on. The pattern counts from the destination's corner.
void PaintRows(const PaintJob& job, const ScaleMapping& mapping, RowOutput* output,
               const ScaledRows& rows, uint8_t* scaled, Band* band) {
  const auto left = static_cast<uint32_t>(job.destination.left);
  const auto top = static_cast<uint32_t>(job.destination.top);
  BandRows to(output, 0, static_cast<int32_t>(mapping.Pixels()),
              static_cast<uint32_t>(mapping.x0) - left, band);
  ForEachScaledRow(mapping, [&](uint32_t row, bool changed, int32_t y) {
    if (changed) rows.Scale(row, scaled);
    to.Add(scaled, static_cast<int32_t>(static_cast<uint32_t>(y) - top), y);
  });
  to.Finish();
}

}  // namespace

VnStatus PaintScaled(const PaintJob& job, int32_t deviceBits, int32_t kind, PaintTools* tools) {
  ScaleMapping mapping;
  if (!MapScaled(job, &mapping)) return OK;
  mapping.CarryAtEqualSizes();

  RowOutput& output = tools->output;
  PaintScratch* scratch = &tools->scratch;
  const VnStatus status =
      output.Prepare(job, deviceBits, kind, mapping.Pixels(), mapping.Rows(), scratch);
  if (status != OK) return status;
  const ScaledRows rows(job, mapping, scratch);
  if (!rows) return ERR_NO_MEMORY;
  uint8_t* scaled = nullptr;
  if (!output.Direct()) {
    scaled = scratch->Zeroed<uint8_t>(PaintSlot::kScaled, rows.Bytes());
    if (!scaled) return ERR_NO_MEMORY;
  }
  Band band(job,
            {output.Bits(), mapping.x0, static_cast<int32_t>(mapping.Pixels()), 0, mapping.Rows()},
            scratch);
  if (!band) return ERR_NO_MEMORY;
  const int32_t bits = output.Bits();
  tools->table.SetColors(job, bits, output.Dithers(), bits > 8 ? 0 : FullColorCount(bits));
  band.Describe(tools->table);
  if (output.Direct()) {
    SendScaledRows(mapping, &band, [&](uint32_t row) { rows.Scale(row, band.Row()); });
  } else {
    PaintRows(job, mapping, &output, rows, scaled, &band);
  }
  return OK;
}

}  // namespace vn
