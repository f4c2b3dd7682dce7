// Turns by right angles, which move every pixel exactly. Fine rotation takes them at multiples of
// 90 degrees.
#ifndef VNCORE_GEOMETRY_RIGHT_ANGLE_H
#define VNCORE_GEOMETRY_RIGHT_ANGLE_H

#include <vncore/vncore.h>
#include "kernel/progress.h"

namespace vn {

// Fills `target` with `source` turned a quarter, clockwise or counter-clockwise as the picture is
// seen for either row order. Both are locked and of the same depth, and of exchanged dimensions.
// Progress per source row. Returns OK or what the status callback returned.
VnStatus TurnQuarter(BitmapHandle* source, BitmapHandle* target, bool clockwise, Progress progress);

// Replaces `bitmap` by its copy turned a quarter, as TurnQuarter does; the region turns with it.
// Progress runs from `statusStart` to `statusEnd` percent, per source row. Returns OK, a code of
// Vn_DupBitmapNewDim or of the region, ERR_NO_BITMAP for rows that are too short for their pixels,
// or what the status callback returned; on anything but OK the bitmap is as it was.
VnStatus RotateRightAngle(BitmapHandle* bitmap, bool clockwise, int32_t statusStart,
                          int32_t statusEnd);

// Turns `bitmap` upside down in place. Progress per pair of rows; an odd middle row is one, too.
// Returns OK, ERR_NO_BITMAP as above, ERR_NO_MEMORY, a code of the region, or what the status
// callback returned; stopped, the rows done so far are turned and the region is as it was.
VnStatus RotateHalfTurn(BitmapHandle* bitmap, int32_t statusStart, int32_t statusEnd);

}  // namespace vn

#endif
