// Lines of more than one pixel's thickness.
#ifndef VNCORE_PLATFORM_HEADLESS_WIDE_LINE_H
#define VNCORE_PLATFORM_HEADLESS_WIDE_LINE_H

#include "platform/headless/regions/region_set.h"

namespace headless {

// What a round pen of `width` pixels covers on its way along the points, and back to the first one
// when `closed`, as far as it lies in the bounds. Throws when memory fails.
RegionSet WideLine(const POINT* points, size_t count, bool closed, int32_t width,
                   const RECT& bounds);

}  // namespace headless

#endif
