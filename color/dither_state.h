// The state of a line-dithering run, which hangs on the source bitmap.
#ifndef VNCORE_COLOR_DITHER_STATE_H
#define VNCORE_COLOR_DITHER_STATE_H

#include <vncore/vncore.h>

namespace vn {

// How a run finds a colour: by a match table that fills itself, by the caller's match table, or by
// arithmetic on the bits for the fixed palettes.
enum PaletteKind : int32_t {
  PALETTE_CUSTOM = 0,
  PALETTE_MATCH_TABLE = 1,
  PALETTE_FIXED_2 = 2,
  PALETTE_FIXED_16 = 3,
  PALETTE_FIXED_256 = 4
};

// The loop of a run: one line of `width` pixels. `order` is the ColorOrder of the source row.
using DitherLineProc = void (*)(DitherRecord& run, uint32_t order, const uint8_t* source,
                                uint8_t* target, size_t width);

}  // namespace vn

struct Vn_DitherRecord {
  uint32_t LineCount;         // lines done under the ordered methods; others leave it alone
  uint32_t TargetCount;       // entries of the target table
  RGBQUAD SourceColors[256];  // the source bitmap's palette, up to 8 bits
  RGBQUAD TargetColors[256];  // the target table, the rest zero
  uint32_t* MatchCells;       // match table, null for the fixed kinds; owned under PALETTE_CUSTOM
  // Palette indexes by cell for the vector loop, kNoAnswer in cells not asked for yet. Null where
  // that loop does not run.
  uint16_t* CellAnswers;
  int32_t SourceBits;
  int32_t Method;
  int32_t PaletteKind;
  int32_t TargetBits;
  int32_t ErrorRowCount;   // per channel
  int32_t ErrorRowLength;  // entries of a row: Width and the filter's reach at both ends
  int32_t* ErrorRows[9];   // red 0, 1, 2, green 0, 1, 2, blue 0, 1, 2: undivided sums
  RGBQUAD
  UsableColors[256];  // target entries that may be matched; fourth byte: index in the target
  uint32_t UsableCount;
  // What a pixel gets, by what the search for it gives (a position in UsableColors, or the index
  // itself for the fixed kinds): the colour that it stands for, and its index in the fourth byte.
  RGBQUAD Answers[256];
  vn::DitherLineProc Line;
};

namespace vn {

// Opens a run on `bitmap` with target rows of `targetBits`. `matchTable` is null or a match table
// that stays the caller's; its empty cells are filled. On failure nothing has changed.
// Returns OK, ERR_NO_MEMORY or ERR_INVALID_PARAMETER.
VnStatus StartDitherState(BitmapHandle* bitmap, const RGBQUAD* colors, uint32_t count,
                          int32_t targetBits, uint32_t* matchTable);

// The depth of the fixed palette that a run dithers to; 0 for other palettes.
int32_t DepthOfFixed(const DitherRecord& run);

// The loop for a run whose other fields are settled.
DitherLineProc SelectDitherLine(const DitherRecord& run);

}  // namespace vn

#endif
