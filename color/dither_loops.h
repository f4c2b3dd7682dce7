// The families of line loops that a run chooses from when it starts.
#ifndef VNCORE_COLOR_DITHER_LOOPS_H
#define VNCORE_COLOR_DITHER_LOOPS_H

#include "color/dither_state.h"

namespace vn {

DitherLineProc SelectNearestLine(const DitherRecord& run);
DitherLineProc SelectDiffusionLine(const DitherRecord& run);
DitherLineProc SelectOrderedLine(const DitherRecord& run);

}  // namespace vn

#endif
