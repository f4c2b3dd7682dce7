// The platform: all 256 ternary raster operations, of DIBs and of sections with themselves and each
// other, under a brush.
//
// Kept out: blits of a surface onto itself under operations that use the brush. Wine runs those as
// a sequence of simple steps on the target, so that where the two areas overlap the later steps
// read a source that the earlier ones have changed.
#include "tests/cases/bitmaps.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

// The full code of a raster operation: the platform looks at the third byte, which is the truth
// table of pattern, source and destination.
DWORD RasterOp(Case& test) {
  static const DWORD named[] = {SRCCOPY,     SRCPAINT,  SRCAND,     SRCINVERT, SRCERASE,
                                NOTSRCCOPY,  MERGECOPY, MERGEPAINT, PATCOPY,   PATPAINT,
                                NOTSRCERASE, PATINVERT, DSTINVERT,  BLACKNESS, WHITENESS};
  if (test.random.Chance(3)) return test.OneOf(named);
  return static_cast<DWORD>(test.Pick(0, 255)) << 16;
}

void Run(Case& test) {
  // Operations work on pixel values, so source and target agree in depth and table.
  const int32_t bits = test.OneOf({8, 16, 24, 32});
  const int32_t width = test.Pick(1, 40), height = test.Pick(1, 20);
  Section target(test, width, height, bits);
  HBRUSH brush = CreateSolidBrush(static_cast<COLORREF>(test.random.Next() & 0xFFFFFF));
  HGDIOBJ before = SelectObject(target.context(), brush);
  for (int32_t i = test.Pick(1, 4); i > 0; --i) {
    const int32_t kind = test.Pick(0, 2);
    // Both halves of the truth table alike: the brush has no part in it.
    const DWORD operation =
        kind == 2 ? static_cast<DWORD>(test.Pick(0, 15) * 0x11) << 16 : RasterOp(test);
    const int32_t x = test.Pick(-4, 12), y = test.Pick(-4, 6);
    const int32_t columns = test.Pick(1, width), rows = test.Pick(1, height);
    const int32_t srcX = test.Pick(0, width - columns), srcY = test.Pick(0, height - rows);
    test.Note("operation %08x, %dx%d from %d,%d to %d,%d", static_cast<unsigned>(operation),
              columns, rows, srcX, srcY, x, y);
    switch (kind) {
      case 0: {
        Dib source(test, width, height, bits, false, false);
        if (bits == 8) GetDIBColorTable(target.context(), 0, 256, source.all().colors);
        test.Fold("StretchDIBits",
                  StretchDIBits(target.context(), x, y, columns, rows, srcX, srcY, columns, rows,
                                source.bits(), source.info(), DIB_RGB_COLORS, operation));
        break;
      }
      case 1: {
        Section source(test, width, height, bits);
        RGBQUAD colors[256];
        if (bits == 8) {
          GetDIBColorTable(target.context(), 0, 256, colors);
          SetDIBColorTable(source.context(), 0, 256, colors);
        }
        test.Fold("BitBlt", BitBlt(target.context(), x, y, columns, rows, source.context(), srcX,
                                   srcY, operation) != 0);
        break;
      }
      default:  // onto itself, overlapping
        test.Fold("BitBlt", BitBlt(target.context(), x, y, columns, rows, target.context(), srcX,
                                   srcY, operation) != 0);
        break;
    }
  }
  target.Fold(test);
  SelectObject(target.context(), before);
  DeleteObject(brush);
}

const Registration registration({"rops", 3000, 0x6C9F4DA39901F559u, Run});

}  // namespace

}  // namespace vn::cases
