// The one drawing loop: source, pattern and target combined row by row within the clip.
#ifndef VNCORE_PLATFORM_HEADLESS_BLIT_H
#define VNCORE_PLATFORM_HEADLESS_BLIT_H

#include "platform/headless/axis.h"
#include "platform/headless/brush.h"
#include "platform/headless/clip.h"
#include "platform/headless/color_map.h"
#include "platform/headless/raster_op.h"
#include "platform/headless/surface.h"

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

}  // namespace headless

#endif
