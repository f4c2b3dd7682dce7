// Rectangles: right and bottom are exclusive, all words signed.
#ifndef VNCORE_KERNEL_RECTS_H
#define VNCORE_KERNEL_RECTS_H

#include <algorithm>
#include <cstdint>

#include <vncore/platform/win32.h>

namespace vn {

inline void SetRectValues(RECT* rect, int32_t left, int32_t top, int32_t right, int32_t bottom) {
  rect->left = left;
  rect->top = top;
  rect->right = right;
  rect->bottom = bottom;
}

inline bool RectIsEmpty(const RECT& rect) {
  return rect.right <= rect.left || rect.bottom <= rect.top;
}

// No edge lies beyond those of `area`; an empty rectangle can be within.
inline bool RectIsWithin(const RECT& rect, const RECT& area) {
  return rect.left >= area.left && rect.right <= area.right && rect.top >= area.top &&
         rect.bottom <= area.bottom;
}

// A plain comparison of the stored values, also for a rectangle whose bottom lies above its top.
// The result is written in any case and may be one of the two; true when it is not empty.
inline bool IntersectRects(RECT* result, const RECT& a, const RECT& b) {
  SetRectValues(result, std::max(a.left, b.left), std::max(a.top, b.top),
                std::min(a.right, b.right), std::min(a.bottom, b.bottom));
  return !RectIsEmpty(*result);
}

}  // namespace vn

#endif
