// The platform: clipping at a surface's edges, at the source's edges, and at a clip region.
#include "tests/cases/bitmaps.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

void Run(Case& test) {
  const int32_t bits = test.OneOf(kDepths);
  const int32_t targetWidth = test.Pick(1, 40), targetHeight = test.Pick(1, 20);
  Section target(test, targetWidth, targetHeight, bits);
  RandomClip(test, target);
  test.Fold("SaveDC", SaveDC(target.context()));
  RandomClip(test, target);
  for (int32_t i = test.Pick(1, 3); i > 0; --i) {
    if (i == 1) test.Fold("RestoreDC", RestoreDC(target.context(), -1) != 0);
    const int32_t x = test.Pick(-20, 40), y = test.Pick(-10, 20);
    const int32_t columns = test.Pick(1, 45), rows = test.Pick(1, 25);
    const int32_t srcX = test.Pick(0, 6), srcY = test.Pick(0, 3);
    test.Note("%dx%d from %d,%d to %d,%d", columns, rows, srcX, srcY, x, y);
    if (test.random.Chance(2)) {
      Dib source(test, columns + srcX, rows + srcY, bits, false, false);
      if (bits <= 8) GetDIBColorTable(target.context(), 0, 1u << bits, source.all().colors);
      test.Fold("StretchDIBits",
                StretchDIBits(target.context(), x, y, columns, rows, srcX, srcY, columns, rows,
                              source.bits(), source.info(), DIB_RGB_COLORS, SRCCOPY));
    } else {
      test.Fold("PatBlt", PatBlt(target.context(), x, y, columns, rows,
                                 test.OneOf({BLACKNESS, WHITENESS, DSTINVERT})) != 0);
    }
  }
  target.Fold(test);
}

const Registration registration({"clipping", 3000, 0xBC6BA25904CAD09Fu, Run});

}  // namespace

}  // namespace vn::cases
