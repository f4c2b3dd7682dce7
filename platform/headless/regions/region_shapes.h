// Shapes as sets of pixels: which pixels a curve or a polygon covers.
#ifndef VNCORE_PLATFORM_HEADLESS_REGION_SHAPES_H
#define VNCORE_PLATFORM_HEADLESS_REGION_SHAPES_H

#include <vector>

#include "platform/headless/regions/region_set.h"

namespace headless {

// Corners of the box in any order. Its right column and bottom row, as given, are not covered.
RegionSet RoundRectSet(int32_t left, int32_t top, int32_t right, int32_t bottom,
                       int32_t cornerWidth, int32_t cornerHeight);

// The pixels around the ellipse that fills a box of ordered corners, right and bottom excluded: a
// closed way in steps of a pixel. A pixel on an axis of the ellipse comes twice in a row.
std::vector<POINT> EllipseOutline(const RECT& box);

// A pixel is covered when its upper left point is inside, where edges themselves are inside on the
// left and the top only. `fillRule` is ALTERNATE or WINDING. Rows above `firstRow` and from `endRow`
// on are left out, and cost nothing. Throws when memory fails, or for more rows than 2^22.
RegionSet PolygonSet(const POINT* points, size_t count, int fillRule, int32_t firstRow = INT32_MIN,
                     int32_t endRow = INT32_MAX);

}  // namespace headless

#endif
