// Regions and devices: paints of all kinds through a bitmap's region, its outline in marching
// dashes, and the region of a colour.
#include <algorithm>

#include "kernel/guards.h"
#include "tests/cases/canvas.h"
#include "tests/support/frame_region.h"

namespace vn::cases {

namespace {

// A region of up to three shapes, or none. Ellipses are wide: Windows systems differ in the tips of
// thin ones.
void SetRegion(Case& test, BitmapHandle* bitmap) {
  for (int32_t i = test.Pick(0, 3); i > 0; --i) {
    const auto mode = static_cast<uint32_t>(test.Pick(0, REGION_COMBINE_REPLACE_INVERTED));
    const int32_t left = test.Pick(-15, 40), top = test.Pick(-15, 30);
    const RECT box = {left, top, left + test.Pick(20, 50), top + test.Pick(2, 50)};
    test.Note("shape at %d, %d, mode %u", left, top, mode);
    test.Fold("set", test.random.Chance(2) ? Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, mode)
                                           : Vn_SetBitmapRgnRect(bitmap, nullptr, &box, mode));
  }
}

void Paint(Case& test, HDC canvas, BitmapHandle* bitmap) {
  const PaintRects rects(test, *bitmap);
  const DWORD operation = RandomOperation(test);
  switch (test.Pick(0, 2)) {
    case 0:
      test.Fold("Vn_PaintRgnDC",
                Vn_PaintRgnDC(canvas, bitmap, rects.sourceOrNull, rects.sourceClipOrNull,
                              &rects.destination, rects.destinationClipOrNull, operation));
      break;
    case 1: {
      std::vector<uint8_t> rows(static_cast<uint32_t>(bitmap->Height) * bitmap->BytesPerLine);
      test.random.Fill(rows.data(), rows.size());
      const int32_t first = test.Pick(0, bitmap->Height - 1);
      test.Fold("Vn_PaintRgnDCBuffer",
                Vn_PaintRgnDCBuffer(canvas, bitmap, rects.sourceOrNull, rects.sourceClipOrNull,
                                    &rects.destination, rects.destinationClipOrNull, operation,
                                    rows.data(), first, bitmap->Height - first));
      Vn_ReleaseBitmap(bitmap);
      break;
    }
    default: {
      const auto effect = static_cast<uint32_t>(test.Pick(0, EFFECT_COUNT));
      test.Note("effect %u", effect);
      const ProgressScope progress(test);
      test.Fold(
          "Vn_PaintRgnDCEffect",
          Vn_PaintRgnDCEffect(canvas, bitmap, rects.sourceOrNull, rects.sourceClipOrNull,
                              &rects.destination, rects.destinationClipOrNull, operation, effect));
      break;
    }
  }
}

void Frame(Case& test, HDC canvas, BitmapHandle* bitmap) {
  const RegionTransform transform = {test.OneOf({VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST}),
                                     test.Pick(1, 3),
                                     test.Pick(1, 2),
                                     test.Pick(1, 3),
                                     test.Pick(1, 2),
                                     test.Pick(-5, 9),
                                     test.Pick(-5, 9)};
  const auto frame = static_cast<uint32_t>(test.Pick(0, 8));
  test.Note("frame %u", frame);
  test.Fold("Vn_FrameBitmapRgn",
            test::FrameRegion(canvas, bitmap, test.random.Chance(3) ? nullptr : &transform, frame));
}

// A palette device has black and white for certain. Which of its entries shows another colour of the
// text is not defined: Wine and the headless platform search different ones.
template <Screen Kind>
void SetDashColors(Case& test, HDC canvas) {
  const bool any = Kind == Screen::kTrueColor;
  const auto color = [&] { return static_cast<COLORREF>(test.random.Next() & 0xFFFFFF); };
  SetTextColor(canvas, any ? color() : RGB(0, 0, 0));
  SetBkColor(canvas, any ? color() : RGB(255, 255, 255));
}

template <Screen Kind>
void Run(Case& test) {
  const Canvas canvas(test, Kind);
  Bitmap bitmap(test, RandomShape(test, 60, 40));
  SetRegion(test, bitmap);
  const DisplayModeScope mode(~0u, RandomDisplayMode(test));
  const RealizedPalette palette = FoldedPaintPalette(test, canvas, bitmap);
  HRGN clip = CreateRectRgn(3, 2, 80, 60);
  SelectClipRgn(canvas, clip);
  DeleteObject(clip);
  SetDashColors<Kind>(test, canvas);
  for (int32_t i = test.Pick(1, 2); i > 0; --i) {
    Paint(test, canvas, bitmap);
    Frame(test, canvas, bitmap);
  }
  // The caller's clip is back.
  PatBlt(canvas, 0, 0, 320, 240, DSTINVERT);
  SelectClipRgn(canvas, nullptr);
  FoldArea(test, canvas);
}

// Short runs of few colours, of which one is asked for.
void RunColor(Case& test) {
  Bitmap bitmap(test, RandomShape(test, 60, 40));
  SetRegion(test, bitmap);
  if (test.random.Chance(2)) {
    const COLORREF colors[] = {0, 0xFFFFFF, Vn_GetPixelColor(bitmap, 0, 0)};
    for (int32_t y = 0; y < bitmap->Height; ++y) {
      for (int32_t x = 0; x < bitmap->Width;) {
        const COLORREF color = test.OneOf(colors);
        for (int32_t run = test.Pick(1, 6); run > 0 && x < bitmap->Width; --run, ++x)
          Vn_PutPixelColor(bitmap, y, x, color);
      }
    }
  }
  const int32_t row = test.Pick(0, bitmap->Height - 1), column = test.Pick(0, bitmap->Width - 1);
  const COLORREF color = Vn_GetPixelColor(bitmap, row, column);
  const auto mode = static_cast<uint32_t>(test.Pick(0, REGION_COMBINE_REPLACE_INVERTED + 1));
  test.Note("colour %06x, mode %u", static_cast<unsigned>(color), mode);
  test.Fold("Vn_SetBitmapRgnColor", Vn_SetBitmapRgnColor(bitmap, color, mode));
  test.Fold("indexes", (bitmap->Flags & FLAG_PALETTE_INDEXES) != 0);
  test.Fold("Vn_BitmapHasRgn", Vn_BitmapHasRgn(bitmap));
  RECT box = {};
  test.Fold("Vn_GetBitmapRgnBounds", Vn_GetBitmapRgnBounds(bitmap, nullptr, &box));
  test.FoldBytes("bounds", &box, sizeof box);
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    uint64_t selected = 0;
    for (int32_t x = 0; x < bitmap->Width; ++x)
      selected |= uint64_t{Vn_IsPtInBitmapRgn(bitmap, y, x) != 0} << x;
    test.Fold("row", static_cast<int64_t>(selected));
  }
}

const Registration trueColor({"region-paint", 1500, 0x88fa0cb6c858b4e4, Run<Screen::kTrueColor>,
                              Screen::kTrueColor});
const Registration palette({"region-paint-8", 1500, 0x6e4f297792e835cd, Run<Screen::kPalette>,
                            Screen::kPalette});
const Registration color({"region-color", 3000, 0x00f95cf95852c922, RunColor});

}  // namespace

}  // namespace vn::cases
