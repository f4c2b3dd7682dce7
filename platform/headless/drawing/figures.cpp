// Closed figures: Rectangle, Ellipse, Polygon.
#include <algorithm>
#include <vector>

#include "platform/headless/drawing/outline.h"
#include "platform/headless/regions/region_shapes.h"

namespace headless {
namespace {

// Corners in order.
RECT Ordered(int left, int top, int right, int bottom) {
  return {std::min(left, right), std::min(top, bottom), std::max(left, right),
          std::max(top, bottom)};
}

bool Empty(const RECT& rect) { return rect.left == rect.right || rect.top == rect.bottom; }

// Under a thin pen the brush leaves the outline alone, so that the two never meet on a pixel.
bool DrawRectangle(const Draughtsman& draughtsman, RECT rect) {
  --rect.right, --rect.bottom;
  const POINT corners[] = {{rect.right, rect.top},
                           {rect.left, rect.top},
                           {rect.left, rect.bottom},
                           {rect.right, rect.bottom}};
  if (draughtsman.penWidth() == 1) ++rect.left, ++rect.top;
  RegionSet interior;
  if (rect.left < rect.right && rect.top < rect.bottom)
    interior = RegionSet::FromRect(rect.left, rect.top, rect.right, rect.bottom);
  return draughtsman.Figure(std::move(interior), corners, 4);
}

// The brush fills the whole ellipse; of a flat box, which has none, what it fills of a rectangle.
bool DrawEllipse(const Draughtsman& draughtsman, const RECT& rect) {
  RegionSet interior;
  if (draughtsman.fills()) {
    const int32_t width = rect.right - rect.left, height = rect.bottom - rect.top;
    const int32_t more = std::min(width, height) > 2 ? 1 : 0;
    interior =
        RoundRectSet(rect.left, rect.top, rect.right + more, rect.bottom + more, width, height);
  }
  const std::vector<POINT> outline = EllipseOutline(rect);
  return draughtsman.Figure(std::move(interior), outline.data(), outline.size());
}

}  // namespace
}  // namespace headless

using namespace headless;

BOOL Rectangle(HDC context, int left, int top, int right, int bottom) {
  return Enter<BOOL>(FALSE, [&] {
    const Draughtsman draughtsman(Find<Context>(context));
    const RECT rect = Ordered(left, top, right, bottom);
    return draughtsman.Reaches(rect) && (Empty(rect) || DrawRectangle(draughtsman, rect));
  });
}

BOOL Ellipse(HDC context, int left, int top, int right, int bottom) {
  return Enter<BOOL>(FALSE, [&] {
    const Draughtsman draughtsman(Find<Context>(context));
    const RECT rect = Ordered(left, top, right, bottom);
    return draughtsman.Reaches(rect) && (Empty(rect) || DrawEllipse(draughtsman, rect));
  });
}

BOOL Polygon(HDC context, const POINT* points, int count) {
  return Enter<BOOL>(FALSE, [&] {
    const auto* found = Find<Context>(context);
    if (!found || !points || count < 2) return FALSE;
    const auto corners = static_cast<size_t>(count);
    const Draughtsman draughtsman(found);
    RegionSet interior;
    const RECT& seen = draughtsman.bounds();
    if (draughtsman.fills())
      interior = PolygonSet(points, corners, found->state.fillRule, seen.top, seen.bottom);
    return BOOL{draughtsman.Figure(std::move(interior), points, corners)};
  });
}
