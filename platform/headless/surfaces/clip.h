// The clip of a device context: what drawing is confined to.
#ifndef VNCORE_PLATFORM_HEADLESS_CLIP_H
#define VNCORE_PLATFORM_HEADLESS_CLIP_H

#include <memory>
#include <vector>

#include <vncore/platform/win32.h>

namespace headless {

// Rectangles in the bands of a region, by rising top and then left, in device coordinates.
using ClipRects = std::vector<RECT>;

// Null: no clip region, drawing is confined by the surface alone. An empty list lets nothing
// through. Shared between a context and its saved states, hence constant.
using Clip = std::shared_ptr<const ClipRects>;

}  // namespace headless

#endif
