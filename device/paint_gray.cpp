// 1-bit painting as 8-bit gray at 1:1.
#include "device/paint_tools.h"
#include "device/row_source.h"
#include "device/scale_mapping.h"
#include "device/spread_bits.h"

namespace vn {
VnStatus PaintBitonalGray(const PaintJob& job, bool invert, PaintTools* tools) {
  ShiftMapping mapping;
  if (!MapUnscaled(job, &mapping)) return OK;
  const RECT& lines = mapping.source;
  const auto left = static_cast<uint32_t>(lines.left);
  const auto width = static_cast<uint32_t>(mapping.Columns());
  const ColumnSpan span = ColumnSpan::Of(left, uint64_t{left} + width, 1);

  Band band(job,
            {8, static_cast<int32_t>(mapping.device.left), mapping.Columns(), 0, mapping.Rows()},
            &tools->scratch);
  uint8_t* bits = tools->scratch.Zeroed<uint8_t>(PaintSlot::kFetched, span.bytes);
  if (!band || !bits) return ERR_NO_MEMORY;
  tools->table.SetGrays();
  band.Describe(tools->table);
  const RowSource source(job);
  int32_t y = mapping.device.bottom;
  for (int32_t line = lines.bottom; line > lines.top;) {
    --line;
    --y;
    source.Fetch(UnscaledStorageRow(job, line), span.start, span.bytes, bits);
    SpreadBits(bits, left & 7, width, invert, band.Row());
    band.Commit(y);
  }
  band.Finish();
  return OK;
}

}  // namespace vn
