// The pixels that a combination is about.
#ifndef VNCORE_COMPOSE_COMBINE_AREA_H
#define VNCORE_COMPOSE_COMBINE_AREA_H

#include <vncore/vncore.h>

namespace vn {

// A rectangle of the destination, and where its first pixel lies in the source.
struct CombineArea {
  RECT target;
  int32_t sourceX;
  int32_t sourceY;
};

// Cuts the rectangle at (x, y), `width` by `height`, to the bounds of the destination's region, and
// the one at (sourceX, sourceY) to those of the source's, which may be null. False when nothing is
// left, or when 32 bits wrapped on the way and led out of the bitmaps.
bool CutCombineArea(CombineArea* area, BitmapHandle* destination, int32_t x, int32_t y,
                    int32_t width, int32_t height, BitmapHandle* source, int32_t sourceX,
                    int32_t sourceY);

}  // namespace vn

#endif
