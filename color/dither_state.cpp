// Start and stop of a line-dithering run.
#include "color/dither_state.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "color/cell_answers_avx2.h"
#include "color/dither_filters.h"
#include "color/fixed_palettes.h"
#include "color/palettes.h"
#include "kernel/pixel_format.h"
#include "kernel/scratch_buffer.h"
#include "kernel/vector.h"

namespace vn {
namespace {

constexpr BYTE kReserved = 3;  // flags of entries that no pixel is matched to

void FreeRecord(DitherRecord* run) {
  if (run->MatchCells && run->PaletteKind == PALETTE_CUSTOM) Vn_OsFree(run->MatchCells);
  if (run->CellAnswers) Vn_OsFree(run->CellAnswers);
  for (int32_t* row : run->ErrorRows) {
    if (row) Vn_OsFree(row);
  }
  Vn_OsFree(run);
}

struct RecordDeleter {
  void operator()(DitherRecord* run) const { FreeRecord(run); }
};
using OwnedRecord = std::unique_ptr<DitherRecord, RecordDeleter>;

struct FixedTable {
  const RGBQUAD* colors;
  PaletteKind kind;
};
FixedTable FixedPaletteOf(uint32_t count) {
  if (count <= 2) return {FixedPalette2.data(), PALETTE_FIXED_2};
  if (count <= 16) return {FixedPalette16.data(), PALETTE_FIXED_16};
  return {FixedPalette256.data(), PALETTE_FIXED_256};
}

// Settles kind, match table and target table.
VnStatus ChoosePalette(DitherRecord& run, const RGBQUAD* colors, uint32_t* matchTable) {
  const uint32_t count = run.TargetCount;
  const FixedTable fixed = FixedPaletteOf(count);
  const bool isFixed = !colors || std::memcmp(colors, fixed.colors, count * sizeof(RGBQUAD)) == 0;
  if (!colors) colors = fixed.colors;
  std::copy_n(colors, count, run.TargetColors);
  if (matchTable) {
    run.PaletteKind = PALETTE_MATCH_TABLE;
    run.MatchCells = matchTable;
  } else if (isFixed) {
    run.PaletteKind = fixed.kind;
  } else {
    run.PaletteKind = PALETTE_CUSTOM;
    run.MatchCells = ScratchBuffer<uint32_t>(kMatchCells, Fill::kZero).Release();
    if (!run.MatchCells) return ERR_NO_MEMORY;
  }
  return OK;
}

RGBQUAD WithIndex(RGBQUAD color, uint32_t index) {
  color.rgbReserved = static_cast<BYTE>(index);
  return color;
}

// Under the kinds that search, the target's entries that are not reserved.
void CollectUsableColors(DitherRecord& run) {
  if (!run.MatchCells) return;
  for (uint32_t i = 0; i < run.TargetCount; ++i) {
    if (run.TargetColors[i].rgbReserved & kReserved) continue;
    run.UsableColors[run.UsableCount++] = WithIndex(run.TargetColors[i], i);
  }
}

// Errors are taken against the target table, also where the search leads beyond its entries: fixed
// arithmetic to an index past a short table, a caller's match table to a position past the usable
// colours, which means index 0.
void PrepareAnswers(DitherRecord& run) {
  for (uint32_t i = 0; i < kMaxColors; ++i) {
    const uint32_t index = run.MatchCells ? run.UsableColors[i].rgbReserved : i;
    run.Answers[i] = WithIndex(run.TargetColors[index], index);
  }
}

VnStatus AllocateErrorRows(DitherRecord& run, int32_t width) {
  if (run.Method < 1 || run.Method > kLastDiffusionMethod) return OK;
  const DiffusionFilter& filter = kDiffusionFilters[run.Method];
  run.ErrorRowCount = filter.rows;
  // Widths below 0 are no pixels; near 2^31 the sum wraps and the allocation fails.
  const uint32_t length =
      static_cast<uint32_t>(std::max(width, 0)) + 2 * static_cast<uint32_t>(filter.reach);
  run.ErrorRowLength = static_cast<int32_t>(length);
  for (int row = 0; row < filter.rows; ++row) {
    for (int channel = 0; channel < 3; ++channel) {
      int32_t*& place = run.ErrorRows[3 * channel + row];
      place = ScratchBuffer<int32_t>(length, Fill::kZero).Release();
      if (!place) return ERR_NO_MEMORY;
    }
  }
  return OK;
}

// For pictures large enough to fill it. Without it the plain loop runs.
void AllocateCellAnswers(DitherRecord& run, const BitmapHandle& bitmap) {
  constexpr int64_t kWorthwhile = 4 * int64_t{kMatchCells};
  if (!run.MatchCells || run.Method != DITHER_NONE || !VNCORE_VECTOR_FORM(false, true) ||
      int64_t{bitmap.Width} * bitmap.Height < kWorthwhile) {
    return;
  }
  run.CellAnswers = ScratchBuffer<uint16_t>(kMatchCells).Release();
  if (run.CellAnswers) std::fill_n(run.CellAnswers, kMatchCells, kNoAnswer);
}

// Lets each palette colour find itself without a search. The first of several in a cell wins, and
// what the cell held before stays.
void SeedMatchCells(const DitherRecord& run) {
  if (!run.MatchCells) return;
  const bool usable = run.UsableCount != 0;
  const RGBQUAD* colors = usable ? run.UsableColors : run.TargetColors;
  const uint32_t count = usable ? run.UsableCount : run.TargetCount;
  for (uint32_t i = 0; i < count; ++i) {
    uint32_t& cell = run.MatchCells[CellOf(ColorOf(colors[i]))];
    if (cell == 0) cell = i + 1;
  }
}

}  // namespace

int32_t DepthOfFixed(const DitherRecord& run) {
  switch (run.PaletteKind) {
    case PALETTE_FIXED_2:
      return 1;
    case PALETTE_FIXED_16:
      return 4;
    case PALETTE_FIXED_256:
      return 8;
    default:
      return 0;
  }
}

VnStatus StartDitherState(BitmapHandle* bitmap, const RGBQUAD* colors, uint32_t count,
                          int32_t targetBits, uint32_t* matchTable) {
  OwnedRecord owner(ScratchBuffer<DitherRecord>(1, Fill::kZero).Release());
  if (!owner) return ERR_NO_MEMORY;
  DitherRecord& run = *owner;
  if (!WithDepth(bitmap->BitsPerPixel, [](auto) {})) return ERR_INVALID_PARAMETER;
  if (count == 0 || count > kMaxColors) return ERR_INVALID_PARAMETER;
  run.TargetCount = count;
  run.SourceBits = bitmap->BitsPerPixel;
  run.TargetBits = targetBits;
  const VnStatus palette = ChoosePalette(run, colors, matchTable);
  if (palette != OK) return palette;
  CollectUsableColors(run);
  PrepareAnswers(run);

  if (bitmap->DitherMethod > DITHER_CLUSTERED) return ERR_INVALID_PARAMETER;
  run.Method = static_cast<int32_t>(bitmap->DitherMethod);
  if (run.SourceBits <= 8) {
    Vn_GetPaletteEntries(ActivePalette(*bitmap), 0, static_cast<uint32_t>(bitmap->ColorCount),
                         run.SourceColors);
  }
  const VnStatus rows = AllocateErrorRows(run, bitmap->Width);
  if (rows != OK) return rows;
  AllocateCellAnswers(run, *bitmap);
  SeedMatchCells(run);
  run.Line = SelectDitherLine(run);
  bitmap->DitherState = owner.release();
  return OK;
}

}  // namespace vn

VnStatus VN_CALL Vn_StartDithering(BitmapHandle* bitmap, const RGBQUAD* colors, uint32_t count) {
  if (!bitmap || count > vn::kMaxColors) return ERR_INVALID_PARAMETER;
  const int32_t targetBits = count <= 2 ? 1 : count <= 16 ? 4 : 8;
  return vn::StartDitherState(bitmap, colors, count, targetBits, nullptr);
}

VnStatus VN_CALL Vn_DitherLine(BitmapHandle* bitmap, const void* source, void* target) {
  if (!bitmap || !source || !target || !bitmap->DitherState) return ERR_INVALID_PARAMETER;
  DitherRecord& run = *bitmap->DitherState;
  int32_t width = std::max(bitmap->Width, 0);
  // The error rows are as long as the bitmap was wide at the start.
  if (run.ErrorRowCount) {
    width = std::min(width, run.ErrorRowLength - 2 * vn::kDiffusionFilters[run.Method].reach);
  }
  run.Line(run, bitmap->ColorOrder, static_cast<const uint8_t*>(source),
           static_cast<uint8_t*>(target), static_cast<size_t>(width));
  return OK;
}

VnStatus VN_CALL Vn_StopDithering(BitmapHandle* bitmap) {
  if (!bitmap || !bitmap->DitherState) return OK;
  vn::FreeRecord(std::exchange(bitmap->DitherState, nullptr));
  return OK;
}
