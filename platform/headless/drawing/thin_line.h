// Lines of one pixel's thickness.
#ifndef VNCORE_PLATFORM_HEADLESS_THIN_LINE_H
#define VNCORE_PLATFORM_HEADLESS_THIN_LINE_H

#include "platform/headless/regions/region_set.h"

namespace headless {

// Coordinates of figures lie within this on both sides of 0, so that their products fit 64 bits.
constexpr int32_t kFarthest = 1 << 27;

// Appends the runs of pixels, level or upright, of the line from `from` up to but not including
// `to`, as far as they lie in `bounds`. A pixel's centre is the one nearest to the line, of two
// equally near ones the upper or left one; so the pixels do not depend on the line's direction. The
// work is one step for each run within the bounds, however long the line is.
void AppendThinLine(RectList& runs, POINT from, POINT to, const RECT& bounds);

}  // namespace headless

#endif
