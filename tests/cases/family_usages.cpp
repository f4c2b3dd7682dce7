// The platform: StretchDIBits of every depth onto sections of every depth, its table holding
// colours or indexes into the palette selected in the context.
#include "tests/cases/bitmaps.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

void Run(Case& test) {
  const int32_t bits = test.OneOf(kDepths);
  const int32_t targetHeight = test.Pick(1, 20), targetWidth = test.Pick(1, 40);
  Section target(test, targetWidth, targetHeight, bits);
  RandomPaletteScope palette(test, target.context(), test.Pick(2, 256));
  const int32_t sourceBits = test.OneOf(kDepths);
  const int32_t width = test.Pick(1, 40), height = test.Pick(1, 20);
  Dib source(test, width, height, sourceBits, false, test.random.Chance(2));
  const int32_t srcX = test.Pick(0, width - 1), srcY = test.Pick(0, height - 1);
  const int32_t columns = test.Pick(1, width - srcX), rows = test.Pick(1, height - srcY);
  const int32_t x = test.Pick(0, 12), y = test.Pick(0, 6);
  test.Note("%dx%d from %d,%d to %d,%d", columns, rows, srcX, srcY, x, y);
  test.Fold("StretchDIBits",
            StretchDIBits(target.context(), x, y, columns, rows, srcX, srcY, columns, rows,
                          source.bits(), source.info(), source.usage(), SRCCOPY));
  target.Fold(test);
}

const Registration registration({"usages", 3000, 0x7AD97662E254B84Fu, Run});

}  // namespace

}  // namespace vn::cases
