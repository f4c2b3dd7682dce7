// The one drawing loop: source, pattern and target combined row by row within the clip.
#ifndef VNCORE_PLATFORM_HEADLESS_BLIT_H
#define VNCORE_PLATFORM_HEADLESS_BLIT_H

#include <vector>

#include "platform/headless/brush.h"
#include "platform/headless/clip.h"
#include "platform/headless/color_map.h"
#include "platform/headless/raster_op.h"
#include "platform/headless/surface.h"

namespace headless {

// How the pixels of one axis of the target come from those of the source. Either one to one, from
// `source` on, or through a table.
struct Axis {
  int32_t first = 0, count = 0;  // the stretch of the target
  int32_t source = 0;            // pixel of the source for `first`, when `table` is empty
  std::vector<int32_t> table;    // source pixel per target pixel

  int32_t SourceOf(int32_t at) const {
    return table.empty() ? source + (at - first) : table[static_cast<size_t>(at - first)];
  }
};

// Lays `sourceSize` pixels from `source` on over `targetSize` pixels from `target` on, by nearest
// pixel; a negative size runs the other way from its start, and one negative size mirrors. What
// falls outside of the source (0 to sourceLimit) or the target is left out.
Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit, int32_t source,
              int32_t sourceSize, int32_t sourceLimit);
// The same where there is no source.
Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit);

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
