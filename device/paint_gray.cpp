// 1-bit painting as 8-bit gray at 1:1.
#include <algorithm>
#include <array>

#include "device/paint_tools.h"
#include "device/row_source.h"
#include "device/scale_mapping.h"

namespace vn {
namespace {

// Entry v: byte k is 0xFF when bit 7 - k of v is set, else 0.
using BitExpandEntry = std::array<uint8_t, 8>;
constexpr std::array<BitExpandEntry, 256> MakeBitExpandTable() {
  std::array<BitExpandEntry, 256> table{};
  for (size_t v = 0; v < 256; ++v) {
    for (size_t k = 0; k < 8; ++k)
      table[v][k] = (v >> (7 - k) & 1) ? 0xFF : 0;
  }
  return table;
}
constexpr std::array<BitExpandEntry, 256> BitExpandTable = MakeBitExpandTable();

// Spreads `pixels` bits of `bits` to bytes, from the one behind the first `skip` (below 8) on.
void SpreadBits(const uint8_t* bits, uint32_t skip, uint32_t pixels, bool invert, uint8_t* to) {
  const uint8_t flip = invert ? 0xFF : 0;
  const auto entry = [&] { return BitExpandTable[*bits++ ^ flip].data(); };
  if (skip) {
    const uint32_t head = std::min(8 - skip, pixels);
    std::memcpy(to, entry() + skip, head);
    to += head;
    pixels -= head;
  }
  for (; pixels >= 8; pixels -= 8, to += 8)
    std::memcpy(to, entry(), 8);
  if (pixels) std::memcpy(to, entry(), pixels);
}

}  // namespace

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
