// Effects: what they end with, and what stands there when the callback stops them on the way; each
// piece is a device call of its own.
#include "kernel/guards.h"
#include "tests/cases/canvas.h"

namespace vn::cases {

namespace {

template <Screen Kind>
void Run(Case& test) {
  const Canvas canvas(test, Kind);
  Bitmap bitmap(test, RandomShape(test, 60, 40));
  const DisplayModeScope mode(~0u, RandomDisplayMode(test));
  const RealizedPalette palette = FoldedPaintPalette(test, canvas, bitmap);
  const PaintRects rects(test, *bitmap.get());
  // A pixel that is painted twice shows it under any operation but a copy.
  const DWORD operation = RandomOperation(test);
  const auto effect = static_cast<uint32_t>(test.Pick(0, EFFECT_COUNT));
  const int32_t stopAt = test.random.Chance(3) ? test.Pick(0, 60) : -1;
  test.Note("effect %u, stopped at call %d", effect, stopAt);
  {
    const ProgressScope progress(test, stopAt, test.OneOf({0, -77, 5}));
    test.Fold("Vn_PaintDCEffect",
              Vn_PaintDCEffect(canvas, bitmap, rects.sourceOrNull, rects.sourceClipOrNull,
                               &rects.destination, rects.destinationClipOrNull, operation, effect));
  }
  test.Fold("mode", Vn_GetDisplayMode());
  FoldArea(test, canvas);
}

const Registration trueColor({"effects", 1500, 0x53f4b02f554b6da0, Run<Screen::kTrueColor>,
                              Screen::kTrueColor});
const Registration palette({"effects-8", 1500, 0x94b8489bce2fbbe5, Run<Screen::kPalette>,
                            Screen::kPalette});

}  // namespace

}  // namespace vn::cases
