// The palette builder: colours of a picture by repeated splitting of the colour space.
#ifndef VNCORE_COLOR_OPTIMIZE_PALETTE_H
#define VNCORE_COLOR_OPTIMIZE_PALETTE_H

#include <vncore/vncore.h>
#include "kernel/scratch_buffer.h"

namespace vn {

// Writes at most `count` colours for the picture into `colors`, sorted by red, green and blue, and
// zeros after them up to `count`. A palette that is small enough already is taken as it is, sorted.
// Otherwise the picture's 15-bit colours are counted and split into boxes: always the box of
// greatest variance, along its axis of greatest variance, at the mean.
// `matchTable`: null, or receives the histogram turned into a match table of the result, complete
// for the picture's own colours and 0 elsewhere; empty when nothing was counted.
// Returns OK, ERR_NO_MEMORY, or ERR_INVALID_PARAMETER for a bitmap without storage, null `colors`
// or a count of 0.
VnStatus OptimizePalette(BitmapHandle* bitmap, RGBQUAD* colors, uint32_t count,
                         ScratchBuffer<uint32_t>* matchTable);

}  // namespace vn

#endif
