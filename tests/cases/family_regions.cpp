// The region of a bitmap: shapes under transforms and modes, what is told of it, row by row, and
// how it follows its picture.
#include "region/region_motion.h"

#include <algorithm>
#include <vector>

#include <vncore/vncore.h>
#include "tests/cases/case.h"

namespace vn::cases {

namespace {

// A record without pixels: a region needs no more.
struct Plain {
  explicit Plain(Case& test) {
    record.Width = test.Pick(1, 60);
    record.Height = test.Pick(1, 45);
    record.ViewOrigin = test.OneOf({VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST});
    test.Note("%d by %d, origin %u", record.Width, record.Height, record.ViewOrigin);
  }
  Plain(const Plain&) = delete;
  Plain& operator=(const Plain&) = delete;
  ~Plain() { Vn_FreeBitmapRgn(&record); }

  BitmapHandle record{};
};

RegionTransform RandomTransform(Case& test) {
  const RegionTransform transform = {test.random.Chance(20) ? 1 : test.OneOf({0, 2}),
                                     test.Pick(-1, 5),
                                     test.Pick(test.random.Chance(20) ? 0 : 1, 4),
                                     test.Pick(0, 5),
                                     test.Pick(1, 4),
                                     test.Pick(-9, 9),
                                     test.Pick(-9, 9)};
  test.Note("transform %d, %d/%d, %d/%d, %d, %d", transform.ViewOrigin, transform.XScaleNumerator,
            transform.XScaleDenominator, transform.YScaleNumerator, transform.YScaleDenominator,
            transform.XOffset, transform.YOffset);
  return transform;
}

// A box at least twenty wide: Windows systems differ in the tips of very thin curves.
RECT RandomBox(Case& test) {
  const int32_t left = test.Pick(-15, 40), top = test.Pick(-15, 30);
  return {left, top, left + test.Pick(20, 50), top + test.Pick(2, 50)};
}

VnStatus SetShape(Case& test, BitmapHandle* bitmap, const RegionTransform* transform) {
  const auto mode = static_cast<uint32_t>(test.Pick(0, test.random.Chance(20) ? 7 : 6));
  const int32_t kind = test.Pick(0, 3);
  const RECT box = RandomBox(test);
  test.Note("shape %d, mode %u", kind, mode);
  switch (kind) {
    case 0:
      return Vn_SetBitmapRgnRect(bitmap, transform, &box, mode);
    case 1:
      return Vn_SetBitmapRgnEllipse(bitmap, transform, &box, mode);
    case 2: {
      const int32_t width = test.Pick(16, 30), height = test.Pick(0, 30);
      return Vn_SetBitmapRgnRoundRect(bitmap, transform, &box, width, height, mode);
    }
    default: {
      POINT points[8];
      const int32_t count = test.Pick(2, 8);
      for (POINT& point : points) {
        point.x = test.Pick(-15, 70);
        point.y = test.Pick(-15, 60);
      }
      return Vn_SetBitmapRgnPolygon(bitmap, transform, points, count,
                                    static_cast<uint32_t>(test.Pick(0, 1)), mode);
    }
  }
}

// What the functions tell of the region. Runs that touch are taken together: on Win32s they are
// found by scanning, elsewhere they come as the platform lists them.
void FoldRegion(Case& test, const BitmapHandle* bitmap) {
  test.Fold("Vn_BitmapHasRgn", Vn_BitmapHasRgn(bitmap));
  uint32_t area = 0;
  test.Fold("Vn_GetBitmapRgnArea", Vn_GetBitmapRgnArea(bitmap, &area));
  test.Fold("area", area);
  int32_t most = 0;
  test.Fold("Vn_GetBitmapClipSegmentsMax", Vn_GetBitmapClipSegmentsMax(bitmap, &most));
  test.Fold("most", most);
  std::vector<int32_t> runs(2 * static_cast<size_t>(std::max(most, 2)) + 200);
  for (int32_t row = -1; row <= bitmap->Height; ++row) {
    int32_t count = 0;
    test.Fold("Vn_GetBitmapClipSegments",
              Vn_GetBitmapClipSegments(bitmap, row, runs.data(), &count));
    for (int32_t i = 0; i < count; i += 2) {
      if (i == 0 || runs[i] != runs[i - 1]) test.Fold("left", runs[i]);
      if (i + 2 == count || runs[i + 1] != runs[i + 2]) test.Fold("right", runs[i + 1]);
    }
    const int32_t column = test.Pick(-1, bitmap->Width);
    test.Fold("Vn_IsPtInBitmapRgn", Vn_IsPtInBitmapRgn(bitmap, row, column));
  }
}

void FoldObject(Case& test, BitmapHandle* bitmap, const RegionTransform* transform) {
  RECT box = {};
  test.Fold("Vn_GetBitmapRgnBounds", Vn_GetBitmapRgnBounds(bitmap, transform, &box));
  test.FoldBytes("bounds", &box, sizeof box);
  HRGN region = nullptr;
  const VnStatus status = Vn_GetBitmapRgnHandle(bitmap, transform, &region);
  test.Fold("Vn_GetBitmapRgnHandle", status);
  if (status != OK) return;
  box = {};
  test.Fold("GetRgnBox", GetRgnBox(region, &box));
  test.FoldBytes("box", &box, sizeof box);
  for (int32_t i = 0; i < 12; ++i) {
    const int32_t x = test.Pick(-10, 90), y = test.Pick(-10, 70);
    test.Fold("PtInRegion", PtInRegion(region, x, y) != 0);
  }
  DeleteObject(region);
}

void Move(Case& test, BitmapHandle* bitmap) {
  const int32_t kind = test.Pick(0, 5);
  const int32_t a = test.Pick(-10, 60), b = test.Pick(-10, 45);
  test.Note("motion %d, %d, %d", kind, a, b);
  switch (kind) {
    case 0:
      test.Fold("FlipRegion", FlipRegion(bitmap));
      break;
    case 1:
      test.Fold("ReverseRegion", ReverseRegion(bitmap));
      break;
    case 2:
      test.Fold("Vn_OffsetBitmapRgn", Vn_OffsetBitmapRgn(bitmap, b, a));
      break;
    case 3:
      test.Fold("ScaleRegion", ScaleRegion(bitmap, std::max(a, 1), std::max(b, 1)));
      bitmap->Width = std::max(a, 1);
      bitmap->Height = std::max(b, 1);
      break;
    case 4: {
      BitmapHandle copy = *bitmap;
      copy.Width = std::max(a, 1);
      copy.Height = std::max(b, 1);
      const int32_t dx = test.Pick(-9, 9), dy = test.Pick(-9, 9);
      test.Fold("CopyRegion", CopyRegion(&copy, bitmap, dx, dy));
      FoldRegion(test, &copy);
      Vn_FreeBitmapRgn(&copy);
      break;
    }
    default: {
      const int32_t width = bitmap->Width, height = bitmap->Height;
      const int32_t angle =
          test.random.Chance(2) ? test.Pick(-4, 4) * 9000 : test.Pick(-40000, 40000);
      bitmap->Width = std::max(a, 1);
      bitmap->Height = std::max(b, 1);
      test.Fold("RotateRegion", RotateRegion(bitmap, width, height, angle));
      break;
    }
  }
}

void Run(Case& test) {
  Plain plain(test);
  BitmapHandle* bitmap = &plain.record;
  for (int32_t i = test.Pick(1, 4); i > 0; --i) {
    const RegionTransform transform = RandomTransform(test);
    const bool given = test.random.Chance(2);
    test.Fold("set", SetShape(test, bitmap, given ? &transform : nullptr));
    if (test.random.Chance(2)) Move(test, bitmap);
    if (test.random.Chance(2)) FoldObject(test, bitmap, given ? nullptr : &transform);
  }
  FoldRegion(test, bitmap);
  FoldObject(test, bitmap, nullptr);
  test.Fold("Vn_FreeBitmapRgn", Vn_FreeBitmapRgn(bitmap));
  FoldRegion(test, bitmap);
}

const Registration registration({"regions", 4000, 0x86a98963978ce5ff, Run});

}  // namespace

}  // namespace vn::cases
