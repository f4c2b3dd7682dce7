// Gray scale, halftones and colour spaces.
#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

constexpr size_t kSpaceBytes[] = {3, 6, 4, 3, 3, 6, 3};

void SpaceCase(Case& test) {
  const auto from = static_cast<uint32_t>(test.Pick(0, 6)),
             to = static_cast<uint32_t>(test.Pick(0, 6));
  const int32_t count = test.Pick(0, 300);
  std::vector<uint8_t> source(300 * kSpaceBytes[from]), target(300 * kSpaceBytes[to]);
  test.random.Fill(source.data(), source.size());
  const uint32_t wrong = test.random.Chance(30) ? 7 : 0;
  test.Note("%d pixels of space %u to %u", count, from, to + wrong);
  test.Fold("Vn_ConvertColorSpace",
            Vn_ConvertColorSpace(source.data(), target.data(), count, from, to + wrong));
  test.FoldBytes("target", target.data(), target.size());
}

void BitmapCase(Case& test) {
  Bitmap bitmap(test, RandomShape(test, 50, 30));
  const int32_t what = test.Pick(0, 2);
  const auto type = static_cast<uint32_t>(test.random.Chance(30) ? 2 : test.Pick(0, 1));
  const int32_t angle = test.random.Chance(3) ? 0 : test.Pick(-80000, 80000);
  test.Note("operation %d, type %u, angle %d", what, type, angle);
  {
    const ProgressScope progress(test, test.random.Chance(10) ? test.Pick(0, 8) : -1);
    if (what == 0) test.Fold("Vn_GrayScaleBitmap", Vn_GrayScaleBitmap(bitmap));
    if (what == 1) test.Fold("Vn_HalfToneBitmap", Vn_HalfToneBitmap(bitmap, type));
    if (what == 2) test.Fold("Vn_HalfToneBitmapExt", Vn_HalfToneBitmapExt(bitmap, type, angle));
  }
  FoldRecord(test, bitmap);
  FoldPixels(test, bitmap);
  FoldPalette(test, "Palette", bitmap->Palette);
}

void Run(Case& test) {
  if (test.random.Chance(4)) {
    SpaceCase(test);
  } else {
    BitmapCase(test);
  }
}

const Registration registration({"gray", 4000, 0x24A4613A3C3B2041u, Run});

}  // namespace

}  // namespace vn::cases
