// A bitmap filled by a walk through another one.
#ifndef VNCORE_GEOMETRY_FINE_ROTATION_H
#define VNCORE_GEOMETRY_FINE_ROTATION_H

#include <vncore/vncore.h>
#include "geometry/inverse_walk.h"
#include "kernel/progress.h"

namespace vn {

// Fills all of `target` with what `walk` finds in `source`, and with `fillColor` where it finds
// nothing; progress per row of the target. Both are locked and of the same depth, and of the sizes
// that the walk was made for. Returns OK or what the status callback returned.
VnStatus TurnByWalk(BitmapHandle* source, BitmapHandle* target, const InverseWalk& walk,
                    COLORREF fillColor, Progress progress);

}  // namespace vn

#endif
