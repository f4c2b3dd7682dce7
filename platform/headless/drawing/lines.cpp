// SetPixel, and lines from point to point: MoveToEx, LineTo, Polyline.
#include "platform/headless/drawing/outline.h"
#include "platform/headless/surfaces/pixel_rows.h"

using namespace headless;

// The colour that the surface shows for the one asked for, whatever the binary operation makes of it;
// CLR_INVALID outside of the surface or the clip.
COLORREF SetPixel(HDC context, int x, int y, COLORREF color) {
  return Enter<COLORREF>(CLR_INVALID, [&]() -> COLORREF {
    const auto* found = Find<Context>(context);
    if (!found || !found->Shows(x, y)) return CLR_INVALID;
    const Surface& target = *found->Target();
    const uint32_t bits = target.layout.bits, source = 0;
    const uint32_t pixel = PixelOf(RgbOf(color), target, found->Monochrome());
    uint32_t mixed;
    LoadPixels(target.Row(y), bits, x, 1, &mixed);
    BinaryOp(found->state.operation).Combine(1, &pixel, &source, &mixed);
    StorePixels(target.Row(y), bits, x, 1, &mixed);
    return ColorRefOf(ColorOf(pixel, target));
  });
}

BOOL MoveToEx(HDC context, int x, int y, LPPOINT before) {
  return Enter<BOOL>(FALSE, [&] {
    auto* found = Find<Context>(context);
    if (!found) return FALSE;
    const POINT old = std::exchange(found->state.position, POINT{x, y});
    if (before) *before = old;
    return TRUE;
  });
}

BOOL LineTo(HDC context, int x, int y) {
  return Enter<BOOL>(FALSE, [&] {
    auto* found = Find<Context>(context);
    if (!found) return FALSE;
    const POINT points[] = {found->state.position, {x, y}};
    if (!Draughtsman(found).Line(points, 2)) return FALSE;
    found->state.position = points[1];
    return TRUE;
  });
}

BOOL Polyline(HDC context, const POINT* points, int count) {
  return Enter<BOOL>(FALSE, [&] {
    return points && count >= 2 &&
           Draughtsman(Find<Context>(context)).Line(points, static_cast<size_t>(count));
  });
}
