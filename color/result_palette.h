// The palette of a change of colour resolution, settled before its first row.
#ifndef VNCORE_COLOR_RESULT_PALETTE_H
#define VNCORE_COLOR_RESULT_PALETTE_H

#include <vncore/vncore.h>
#include "kernel/scratch_buffer.h"

namespace vn {

// What free entries of an optimised palette hold before the builder fills them, and for good where
// it makes no colour for them. Bit 1 of the flags byte keeps pixels from being matched to it.
inline constexpr RGBQUAD kFillerColor = {2, 2, 2, 2};

// What is asked for, as the arguments of Vn_ColorResBitmap have it; `colorCount` is 1 to 2 to the
// power of the target's depth for depths up to 8.
struct PaletteRequest {
  uint32_t flags;
  const RGBQUAD* colors;
  uint32_t colorCount;
};

// What comes of it. The target's record holds the palette object, and its DibColors the colours.
struct ResultPalette {
  bool dither = false;               // rows run through line dithering
  const RGBQUAD* colors = nullptr;   // the colours to dither to ...
  uint32_t colorCount = 0;           // ... and their number
  ScratchBuffer<uint32_t> ownTable;  // match table of the palette builder
  uint32_t* userTable = nullptr;     // or the thread's

  uint32_t* MatchTable() const { return userTable ? userTable : ownTable.data(); }
};

// Gives the initialised record `target` its palette, or its colour order above 8 bits. The picture
// of `source` is read only for an optimised palette.
// Returns OK, ERR_INVALID_PARAMETER for flags that do not go with the depth, or ERR_NO_MEMORY.
VnStatus SettlePalette(BitmapHandle* source, BitmapHandle* target, const PaletteRequest& request,
                       ResultPalette* result);

}  // namespace vn

#endif
