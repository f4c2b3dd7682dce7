// A colour laid on in part: the soft edges of letters.
#ifndef VNCORE_PLATFORM_HEADLESS_COVERAGE_H
#define VNCORE_PLATFORM_HEADLESS_COVERAGE_H

#include "platform/headless/surfaces/clip.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

// `values` has a byte for each pixel of the area, row by row: 0 leaves the pixel, 255 replaces it.
struct Coverage {
  RECT area;
  const uint8_t* values;
};

// Mixes a colour (0xRRGGBB) into a surface of more than 8 bits, within the clip, null for none.
void LayOn(const Surface& target, const ClipRects* clip, const Coverage& coverage, uint32_t rgb);

}  // namespace headless

#endif
