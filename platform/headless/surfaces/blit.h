// The one drawing loop: source, pattern and target combined row by row within the clip.
#ifndef VNCORE_PLATFORM_HEADLESS_BLIT_H
#define VNCORE_PLATFORM_HEADLESS_BLIT_H

#include "platform/headless/surfaces/axis.h"
#include "platform/headless/surfaces/brush.h"
#include "platform/headless/surfaces/clip.h"
#include "platform/headless/surfaces/color_map.h"
#include "platform/headless/surfaces/raster_op.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

struct BlitJob {
  Surface* target;
  const ClipRects* clip;  // null: none
  Axis columns, rows;
  const Surface* source;  // null for operations without one
  const ColorMap* map;    // source values to target values; null with the source
  const Brush* brush;     // for operations with a pattern
  MonochromeColors monochrome;
  RasterOp operation;
};

void Blit(const BlitJob& job);

// The parts of a job that lie in some rectangles, one after the other; where they overlap the
// operation is done again.
void BlitParts(const BlitJob& job, const RECT* parts, size_t count);

}  // namespace headless

#endif
