// Painting: every depth, order and storage through all renderers and display modes, with clips and
// scales, onto the two kinds of canvas.
#include "kernel/guards.h"
#include "tests/cases/canvas.h"

namespace vn::cases {

namespace {

// One paint, with the palette that the library asks for realised.
template <Screen Kind>
void Run(Case& test) {
  const Canvas canvas(test, Kind);
  Bitmap bitmap(test, RandomShape(test, 60, 40));
  const DisplayModeScope mode(~0u, RandomDisplayMode(test));
  const RealizedPalette palette = FoldedPaintPalette(test, canvas, bitmap);
  const PaintRects rects(test, *bitmap.get());
  const DWORD operation = RandomOperation(test);
  test.Fold("Vn_PaintDC", Vn_PaintDC(canvas, bitmap, rects.sourceOrNull, rects.sourceClipOrNull,
                                     &rects.destination, rects.destinationClipOrNull, operation));
  FoldArea(test, canvas);
}

const Registration trueColor({"painting", 2000, 0x4A4CD74A4EAD9072u, Run<Screen::kTrueColor>,
                              Screen::kTrueColor});
const Registration palette({"painting-8", 2000, 0x740987B9719685E2u, Run<Screen::kPalette>,
                            Screen::kPalette});

}  // namespace

}  // namespace vn::cases
