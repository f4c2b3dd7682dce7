// Copies whole and of rectangles, duplicated records, single pixels by colour.
#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

// Any of the shapes that a region can take, now and then none.
void RandomRegion(Case& test, BitmapHandle* bitmap) {
  const int32_t kind = test.Pick(0, 3);
  const int32_t left = test.Pick(-5, bitmap->Width), top = test.Pick(-5, bitmap->Height);
  const int32_t width = test.Pick(0, 40), height = EllipseHeight(width, test.Pick(0, 20));
  const RECT box = {left, top, left + width, top + height};
  VnStatus status = OK;
  if (kind == 1) status = Vn_SetBitmapRgnRect(bitmap, nullptr, &box, REGION_COMBINE_REPLACE);
  if (kind == 2) status = Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, REGION_COMBINE_REPLACE);
  if (kind == 3) {
    status = Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, REGION_COMBINE_REPLACE_INVERTED);
  }
  test.Fold("region", status);
}

// The pixels that the region selects: lists of rectangles differ from world to world.
void FoldRegion(Case& test, BitmapHandle* bitmap) {
  test.Fold("Vn_BitmapHasRgn", Vn_BitmapHasRgn(bitmap));
  std::vector<uint8_t> inside;
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    for (int32_t column = 0; column < bitmap->Width; ++column) {
      inside.push_back(static_cast<uint8_t>(Vn_IsPtInBitmapRgn(bitmap, row, column)));
    }
  }
  test.FoldBytes("selected", inside.data(), inside.size());
}

void FoldAll(Case& test, BitmapHandle* bitmap) {
  FoldRecord(test, bitmap);
  FoldPixels(test, bitmap);
  FoldRegion(test, bitmap);
}

void PixelCase(Case& test, Bitmap& bitmap) {
  for (int32_t i = 0; i < 20; ++i) {
    const int32_t row = test.Pick(-1, bitmap->Height), column = test.Pick(-1, bitmap->Width);
    const auto color = static_cast<COLORREF>(test.random.Next() & 0x1FFFFFF);
    test.Note("row %d, column %d, colour %06x", row, column, static_cast<unsigned>(color));
    test.Fold("Vn_GetPixelColor", Vn_GetPixelColor(bitmap, row, column));
    test.Fold("Vn_PutPixelColor", Vn_PutPixelColor(bitmap, row, column, color));
  }
  FoldAll(test, bitmap);
}

void Run(Case& test) {
  Bitmap source(test, RandomShape(test, 50, 25));
  RandomRegion(test, source);
  Bitmap copy;
  switch (test.Pick(0, 3)) {
    case 0:
      test.Fold("Vn_CopyBitmap", Vn_CopyBitmap(copy, source));
      FoldAll(test, copy);
      break;
    case 1: {
      const int32_t left = test.Pick(0, source->Width - 1), top = test.Pick(0, source->Height - 1);
      const int32_t width = test.Pick(1, source->Width - left);
      const int32_t height = test.Pick(1, source->Height - top);
      test.Note("from %d, %d, %d by %d", left, top, width, height);
      test.Fold(
          "Vn_CopyBitmapRect",
          Vn_CopyBitmapRect(copy, source, static_cast<uint32_t>(left), static_cast<uint32_t>(top),
                            static_cast<uint32_t>(width), static_cast<uint32_t>(height)));
      FoldAll(test, copy);
      break;
    }
    case 2:
      test.Fold("Vn_DupBitmapNewDim",
                Vn_DupBitmapNewDim(copy, source, static_cast<uint32_t>(test.Pick(0, 60)),
                                   static_cast<uint32_t>(test.Pick(0, 60)), test.OneOf(kDepths),
                                   DUP_PALETTE | DUP_REGION));
      FoldRecord(test, copy);
      FoldRegion(test, copy);
      break;
    case 3:
      PixelCase(test, source);
      break;
  }
}

const Registration registration({"copying", 3000, 0xDF977658312938DAu, Run});

}  // namespace

}  // namespace vn::cases
