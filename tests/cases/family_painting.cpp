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

// The road that most pictures take to a palette device: 24 bits, scaled, dithered to the fixed palette
// that the library asks for, which is realised. Gradients under some noise, so that errors show.
void RunRoad(Case& test) {
  const Canvas screen(test, Screen::kPalette);
  Shape shape = RandomShape(test, 200, 150);
  shape.bits = 24;
  Bitmap bitmap(test, shape);
  std::vector<uint8_t> row(bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  for (uint32_t y = 0; y < shape.height; ++y) {
    for (uint32_t x = 0; x < shape.width; ++x) {
      row[3 * x] = static_cast<uint8_t>(test.Pick(96, 128));
      row[3 * x + 1] = static_cast<uint8_t>(y * 255 / shape.height);
      row[3 * x + 2] = static_cast<uint8_t>(x * 255 / shape.width);
    }
    Vn_PutBitmapRow(bitmap, row.data(), y, bitmap->BytesPerLine);
  }
  Vn_UnlockBitmap(bitmap, state);

  const DisplayModeScope mode(MODE_ORDERED_DITHER, static_cast<uint32_t>(test.Pick(0, 1)));
  const RealizedPalette palette(screen, Vn_CreatePaintPalette(screen, bitmap));
  const int32_t width = test.Pick(1, 320), height = test.Pick(1, 240);
  const RECT destination = {0, 0, width, height};
  test.Note("onto %dx%d", width, height);
  test.Fold("Vn_PaintDC",
            Vn_PaintDC(screen, bitmap, nullptr, nullptr, &destination, nullptr, SRCCOPY));
  FoldArea(test, screen, 320, 240);
}

const Registration trueColor({"painting", 2000, 0x4A4CD74A4EAD9072u, Run<Screen::kTrueColor>,
                              Screen::kTrueColor});
const Registration palette({"painting-8", 2000, 0x740987B9719685E2u, Run<Screen::kPalette>,
                            Screen::kPalette});
const Registration road({"palette-road", 200, 0x001236B0F1490B43u, RunRoad, Screen::kPalette});

}  // namespace

}  // namespace vn::cases
