// The platform: regions as clips of a context, and framed with solid and pattern brushes.
#include <vncore/platform/win32.h>
#include "tests/cases/case.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

HRGN RandomRegion(Case& test) {
  HRGN region = CreateRectRgn(0, 0, 0, 0);
  for (int32_t i = test.Pick(0, 4); i > 0; --i) {
    RECT box;
    box.left = test.Pick(-8, 30);
    box.top = test.Pick(-8, 20);
    box.right = box.left + test.Pick(12, 40);
    box.bottom = box.top + test.Pick(2, 30);
    HRGN part =
        test.random.Chance(2) ? CreateEllipticRgnIndirect(&box) : CreateRectRgnIndirect(&box);
    CombineRgn(region, region, part, test.OneOf({RGN_OR, RGN_XOR, RGN_OR}));
    DeleteObject(part);
  }
  return region;
}

HBRUSH RandomBrush(Case& test) {
  if (test.random.Chance(3)) {
    return CreateSolidBrush(static_cast<COLORREF>(test.random.Next() & 0xFFFFFF));
  }
  WORD rows[8];
  test.random.Fill(rows, sizeof rows);
  HBITMAP pattern = CreateBitmap(8, 8, 1, 1, rows);
  HBRUSH brush = CreatePatternBrush(pattern);
  DeleteObject(pattern);
  return brush;
}

void Clip(Case& test, HDC context) {
  HRGN region = test.random.Chance(4) ? nullptr : RandomRegion(test);
  if (region && test.random.Chance(2)) {
    test.Fold("SelectObject", reinterpret_cast<intptr_t>(SelectObject(context, region)));
  } else {
    test.Fold("SelectClipRgn", SelectClipRgn(context, region));
  }
  if (!region) return;
  // The context has a copy.
  SetRectRgn(region, 0, 0, 3, 3);
  DeleteObject(region);
}

void Run(Case& test) {
  const int32_t width = test.Pick(1, 48), height = test.Pick(1, 32);
  Section target(test, width, height, test.OneOf({1, 4, 8, 16, 24, 32}));
  const HDC context = target.context();
  SetTextColor(context, static_cast<COLORREF>(test.random.Next() & 0xFFFFFF));
  SetBkColor(context, static_cast<COLORREF>(test.random.Next() & 0xFFFFFF));
  int saved = 0;
  for (int32_t i = test.Pick(1, 6); i > 0; --i) {
    switch (test.Pick(0, 5)) {
      case 0:
        Clip(test, context);
        break;
      case 1:
        test.Fold("SaveDC", saved = SaveDC(context));
        break;
      case 2:
        if (saved) test.Fold("RestoreDC", RestoreDC(context, saved) != 0);
        saved = 0;
        break;
      default: {
        HRGN region = RandomRegion(test);
        HBRUSH brush = RandomBrush(test);
        const int32_t across = test.Pick(-1, 4), down = test.Pick(-1, 4);
        test.Note("frame %d by %d", across, down);
        test.Fold("FrameRgn", FrameRgn(context, region, brush, across, down) != 0);
        DeleteObject(brush);
        DeleteObject(region);
        break;
      }
    }
  }
  target.Fold(test);
}

const Registration registration({"frames", 3000, 0xfe88943aa191a36b, Run});

}  // namespace

}  // namespace vn::cases
