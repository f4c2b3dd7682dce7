// The choice of a run's loop.
#include "color/dither_filters.h"
#include "color/dither_loops.h"

namespace vn {

DitherLineProc SelectDitherLine(const DitherRecord& run) {
  if (run.Method == DITHER_NONE) return SelectNearestLine(run);
  if (run.Method <= kLastDiffusionMethod) return SelectDiffusionLine(run);
  return SelectOrderedLine(run);
}

}  // namespace vn
