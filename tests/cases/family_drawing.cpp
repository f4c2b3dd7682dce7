// The platform: points, lines and figures, under every pen, brush and binary raster operation.
//
// Left out are ellipses that are thin for their height, as in family_shapes.cpp.
#include <cstdlib>

#include "tests/cases/bitmaps.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

constexpr int32_t kWidth = 60, kHeight = 44;

COLORREF RandomColor(Case& test) {
  if (test.random.Chance(4)) return test.OneOf({RGB(0, 0, 0), RGB(255, 255, 255)});
  return static_cast<COLORREF>(test.random.Next() & 0xFFFFFF);
}

// Mostly on the surface, now and then far from it.
POINT RandomPoint(Case& test) {
  const int32_t reach = test.random.Chance(12) ? 3000 : 12;
  const int32_t x = test.Pick(-reach, kWidth + reach), y = test.Pick(-reach, kHeight + reach);
  test.Note("point %d,%d", x, y);
  return {x, y};
}

HPEN RandomPen(Case& test) {
  const int style = test.random.Chance(8) ? PS_NULL : PS_SOLID;
  const int width = test.random.Chance(2) ? test.Pick(2, 14) : test.Pick(0, 1);
  const COLORREF color = RandomColor(test);
  test.Note("pen style %d, width %d, colour %06x", style, width, static_cast<unsigned>(color));
  return CreatePen(style, width, color);
}

// A pattern of two colours: the context's own, since it has none.
HBRUSH RandomBrush(Case& test) {
  const int32_t kind = test.Pick(0, 3);
  const COLORREF color = RandomColor(test);
  test.Note("brush kind %d, colour %06x", kind, static_cast<unsigned>(color));
  if (kind == 0) return static_cast<HBRUSH>(GetStockObject(NULL_BRUSH));
  if (kind == 1) return CreateSolidBrush(color);
  uint16_t rows[8];
  test.random.Fill(rows, sizeof rows);
  HBITMAP pattern = CreateBitmap(8, 8, 1, 1, rows);
  HBRUSH brush = CreatePatternBrush(pattern);
  DeleteObject(pattern);
  return brush;
}

// A surface with everything that drawing looks at.
struct Easel {
  explicit Easel(Case& test)
      : section(test, kWidth, kHeight, test.OneOf(kDepths)),
        context(section.context()),
        pen(RandomPen(test)),
        brush(RandomBrush(test)),
        clipped(test.random.Chance(2)) {
    if (clipped) RandomClip(test, section);
    const int operation = test.random.Chance(2) ? R2_COPYPEN : test.Pick(R2_BLACK, R2_WHITE);
    test.Note("operation %d", operation);
    test.Fold("SetROP2", SetROP2(context, operation));
    test.Fold("SelectObject", SelectObject(context, pen) == GetStockObject(BLACK_PEN));
    test.Fold("SelectObject", SelectObject(context, brush) == GetStockObject(WHITE_BRUSH));
    SetTextColor(context, RandomColor(test));
    SetBkColor(context, RandomColor(test));
  }
  ~Easel() {
    SelectObject(context, GetStockObject(BLACK_PEN));
    SelectObject(context, GetStockObject(WHITE_BRUSH));
    DeleteObject(pen);
    DeleteObject(brush);
  }
  Easel(const Easel&) = delete;
  Easel& operator=(const Easel&) = delete;

  Section section;
  HDC context;
  HPEN pen;
  HBRUSH brush;
  const bool clipped;
};

void RunLines(Case& test) {
  const Easel easel(test);
  for (int32_t i = test.Pick(1, 3); i > 0; --i) {
    POINT points[5];
    const int32_t count = test.Pick(0, 5);
    for (int32_t at = 0; at < count; ++at)
      points[at] = RandomPoint(test);
    test.Fold("Polyline", Polyline(easel.context, points, count) != 0);
    const POINT to = RandomPoint(test);
    POINT before = {};
    test.Fold("LineTo", LineTo(easel.context, to.x, to.y) != 0);
    if (test.random.Chance(2)) {
      const POINT next = RandomPoint(test);
      test.Fold("MoveToEx", MoveToEx(easel.context, next.x, next.y, &before) != 0);
      test.FoldBytes("before", &before, sizeof before);
    }
    const POINT at = RandomPoint(test);
    const COLORREF color = RandomColor(test);
    const COLORREF set = SetPixel(easel.context, at.x, at.y, color);
    // Outside, Wine answers the colour all the same.
    const bool outside = at.x < 0 || at.y < 0 || at.x >= kWidth || at.y >= kHeight;
    if (!outside && !easel.clipped) test.Fold("SetPixel", set);
  }
  easel.section.Fold(test);
}

void RunFigures(Case& test) {
  const Easel easel(test);
  SetPolyFillMode(easel.context, test.OneOf({ALTERNATE, WINDING}));
  for (int32_t i = test.Pick(1, 2); i > 0; --i) {
    const int32_t kind = test.Pick(0, 3);
    const POINT a = RandomPoint(test), b = RandomPoint(test);
    switch (kind) {
      case 0:
        test.Fold("Rectangle", Rectangle(easel.context, a.x, a.y, b.x, b.y) != 0);
        break;
      case 1:
        if (3 * std::abs(a.y - b.y) > (a.x - b.x) * (a.x - b.x)) break;
        test.Fold("Ellipse", Ellipse(easel.context, a.x, a.y, b.x, b.y) != 0);
        break;
      case 2: {
        const RECT rect = {a.x, a.y, b.x, b.y};
        test.Fold("FillRect", FillRect(easel.context, &rect, easel.brush));
        break;
      }
      default: {
        POINT points[6] = {a, b};
        const int32_t count = test.Pick(0, 6);
        for (int32_t at = 2; at < count; ++at)
          points[at] = RandomPoint(test);
        test.Fold("Polygon", Polygon(easel.context, points, count) != 0);
        break;
      }
    }
  }
  easel.section.Fold(test);
}

const Registration lines({"lines", 4000, 0xfa16f5e821359206, RunLines});
const Registration figures({"figures", 4000, 0xde41188cc1212c2d, RunFigures});

}  // namespace

}  // namespace vn::cases
