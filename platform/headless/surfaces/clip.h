// The clip of a device context: what drawing is confined to.
#ifndef VNCORE_PLATFORM_HEADLESS_CLIP_H
#define VNCORE_PLATFORM_HEADLESS_CLIP_H

#include <algorithm>
#include <memory>
#include <vector>

#include <vncore/platform/win32.h>

namespace headless {

// Rectangles in the bands of a region, by rising top and then left, in device coordinates.
using ClipRects = std::vector<RECT>;

// Null: no clip region, drawing is confined by the surface alone. An empty list lets nothing
// through. Shared between a context and its saved states, hence constant.
using Clip = std::shared_ptr<const ClipRects>;

// What two rectangles have in common; one side lies beyond the other where that is nothing.
inline RECT Common(const RECT& a, const RECT& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

// Calls `use` for what a clip, null for none, leaves of a rectangle: for each piece that is not
// empty, from the top down.
template <class Use>
void ForEachSeen(const ClipRects* clip, const RECT& part, const Use& use) {
  const auto see = [&](const RECT& piece) {
    if (piece.left < piece.right && piece.top < piece.bottom) use(piece);
  };
  if (!clip) return see(part);
  // Bands lie one below the other, so bottoms rise as tops do.
  auto rect = std::partition_point(clip->begin(), clip->end(),
                                   [&](const RECT& r) { return r.bottom <= part.top; });
  for (; rect != clip->end() && rect->top < part.bottom; ++rect)
    see(Common(part, *rect));
}

}  // namespace headless

#endif
