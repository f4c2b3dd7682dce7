// Painting at 1:1 at any depth.
#include "device/band_rows.h"
#include "device/paint_tools.h"
#include "device/row_source.h"
#include "device/scale_mapping.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

// The columns of a paint as they are fetched: whole bytes, with pixels to skip in the first.
struct FetchedColumns {
  ColumnSpan span;
  int32_t skip;

  FetchedColumns(int32_t left, int32_t width, int32_t bits) {
    const auto column = static_cast<uint32_t>(left);
    const auto end = column + static_cast<uint32_t>(width);
    span = ColumnSpan::Of(column, end, static_cast<uint32_t>(bits));
    skip = static_cast<int32_t>(column - span.start);
    // The first column of packed pixels is a 16-bit word: from 65536 on it wraps. Row lengths are
    // whole words, as a wrapped one would hold less than is written to it.
    if (bits < 8) span.start &= 0xFFFF;
  }
};

// The `count` lines above `line` into a band, read as they lie in storage, be the picture's lines in
// that order or in the other.
void FetchRows(const PaintJob& job, const RowSource& source, const FetchedColumns& columns,
               int32_t line, uint32_t count, Band* band) {
  const auto stride = static_cast<ptrdiff_t>(band->Stride());
  const bool rising = job.BottomFirst();
  const int32_t first = rising ? line - 1 : line - static_cast<int32_t>(count);
  source.FetchRows(UnscaledStorageRow(job, first), count, columns.span.start, columns.span.bytes,
                   band->RowAt(rising ? 0 : count - 1), rising ? stride : -stride);
}

// Rows that go out as they are, from the bottom line up.
void PaintStoredRows(const PaintJob& job, const ShiftMapping& mapping,
                     const FetchedColumns& columns, Band* band) {
  const RowSource source(job);
  const bool inPlace = job.apart && job.BottomFirst() && columns.span.start == 0;
  int32_t y = mapping.device.bottom;
  for (int32_t line = mapping.source.bottom; line > mapping.source.top;) {
    const uint32_t left = static_cast<uint32_t>(line) - static_cast<uint32_t>(mapping.source.top);
    const uint32_t count = std::min(band->Room(), left);
    y -= static_cast<int32_t>(count);
    const uint8_t* rows = nullptr;
    if (inPlace) rows = source.Block(UnscaledStorageRow(job, line - 1), count, band->Stride());
    if (rows) {
      band->SendRows(rows, count, y);
    } else {
      FetchRows(job, source, columns, line, count, band);
      band->CommitRows(count, y);
    }
    line -= static_cast<int32_t>(count);
  }
  band->Finish();
}

// Rows that are worked on, from the bottom line up. The pattern counts in source coordinates.
void PaintRows(const PaintJob& job, const ShiftMapping& mapping, const FetchedColumns& columns,
               RowOutput* output, uint8_t* fetched, Band* band) {
  const RowSource source(job);
  const RECT& lines = mapping.source;
  BandRows rows(output, columns.skip, columns.skip + mapping.Columns(),
                static_cast<uint32_t>(lines.left), band);
  int32_t y = mapping.device.bottom;
  for (int32_t line = lines.bottom; line > lines.top;) {
    --line;
    --y;
    const int64_t row = UnscaledStorageRow(job, line);
    rows.Add(source.Read(row, columns.span.start, columns.span.bytes, fetched), line, y);
  }
  rows.Finish();
}

// Entries of a table: all of the fixed palette, or the bitmap's own.
uint32_t ColorsTold(const BitmapHandle& bitmap, const RowOutput& output) {
  if (output.Bits() > 8) return 0;
  return output.Dithers() ? FullColorCount(static_cast<uint32_t>(output.Bits())) : ColorsOf(bitmap);
}

}  // namespace

VnStatus PaintUnscaled(const PaintJob& job, int32_t deviceBits, int32_t kind, PaintTools* tools) {
  ShiftMapping mapping;
  if (!MapUnscaled(job, &mapping)) return OK;
  const int32_t width = mapping.Columns();
  const FetchedColumns columns(mapping.source.left, width, job.bitmap->BitsPerPixel);

  RowOutput& output = tools->output;
  PaintScratch* scratch = &tools->scratch;
  const VnStatus status =
      output.Prepare(job, deviceBits, kind, static_cast<uint64_t>(width), mapping.Rows(), scratch);
  if (status != OK) return status;
  uint8_t* fetched = nullptr;
  if (!output.Direct()) {
    fetched = scratch->Zeroed<uint8_t>(PaintSlot::kFetched, columns.span.bytes);
    if (!fetched) return ERR_NO_MEMORY;
  }
  // Rows that go out as they are begin with the first byte's skipped pixels.
  const int32_t skip = output.Direct() ? columns.skip : 0;
  Band band(job, {output.Bits(), mapping.device.left, width + skip, skip, mapping.Rows()}, scratch);
  if (!band) return ERR_NO_MEMORY;
  tools->table.SetColors(job, output.Bits(), output.Dithers(), ColorsTold(*job.bitmap, output));
  band.Describe(tools->table);
  if (output.Direct()) {
    PaintStoredRows(job, mapping, columns, &band);
  } else {
    PaintRows(job, mapping, columns, &output, fetched, &band);
  }
  return OK;
}

}  // namespace vn
