// Resizing by stream, into a bitmap and of a bitmap: rows, counts, progress, stops.
#include <algorithm>

#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

// The whole buffer is folded: at 1 and 4 bits old bits shine through, the same in every world.
void StreamCase(Case& test) {
  const int32_t bits = test.OneOf(kDepths);
  const int32_t width = test.Pick(1, 60), height = test.Pick(1, 12);
  const int32_t newWidth = test.Pick(0, 60), newHeight = test.Pick(0, 24);
  test.Note("%d bits, %dx%d to %dx%d", bits, width, height, newWidth, newHeight);
  ResizeState* state = nullptr;
  const VnStatus status = Vn_StartResize(width, height, newWidth, newHeight, &state);
  test.Fold("Vn_StartResize", status);
  if (status != OK) return;
  const int32_t pixels = std::max(width, newWidth);
  std::vector<uint8_t> row(static_cast<size_t>((pixels * bits + 31) / 32 * 4));
  int32_t number = 0;
  for (int32_t i = 0; i < 12; ++i) {
    test.random.Fill(row.data(), row.size());
    uint32_t outWidth = 0, outCount = 0;
    test.Fold("row", number);
    test.Fold("Vn_Resize", Vn_Resize(row.data(), static_cast<uint32_t>(number), bits, &outWidth,
                                     &outCount, state));
    test.Fold("width", outWidth);
    test.Fold("count", outCount);
    test.FoldBytes("bytes", row.data(), row.size());
    number = std::clamp(number + test.OneOf({1, 1, 1, 1, -1, -1, 0, 5}), 0, height - 1);
  }
  test.Fold("Vn_StopResize", Vn_StopResize(state));
}

void IntoCase(Case& test) {
  const Shape shape = RandomShape(test, 60, 30);
  Shape other = RandomShape(test, 90, 130);
  other.bits = shape.bits;
  Bitmap source(test, shape), result(test, other);
  const ProgressScope progress(test, test.random.Chance(4) ? test.Pick(0, 20) : -1,
                               test.OneOf({0, -1000, 55}));
  test.Fold("Vn_ResizeBitmap", Vn_ResizeBitmap(source, result));
  FoldRecord(test, result);
  FoldPixels(test, result);
}

void SizeCase(Case& test) {
  Bitmap bitmap(test, RandomShape(test, 60, 30));
  const RECT box = {test.Pick(0, 10), test.Pick(0, 10), test.Pick(5, 70), test.Pick(5, 40)};
  const bool region = test.random.Chance(2);
  if (region) {
    test.Fold("region", Vn_SetBitmapRgnRect(bitmap, nullptr, &box, REGION_COMBINE_REPLACE));
  }
  for (int32_t i = test.Pick(1, 3); i > 0; --i) {
    test.Fold("Vn_SizeBitmap", Vn_SizeBitmap(bitmap, test.Pick(0, 80), test.Pick(0, 60)));
    FoldRecord(test, bitmap);
    FoldPixels(test, bitmap);
    uint32_t area = 0;
    test.Fold("Vn_GetBitmapRgnArea", Vn_GetBitmapRgnArea(bitmap, &area));
    test.Fold("area", area);
  }
}

void Run(Case& test) {
  switch (test.Pick(0, 2)) {
    case 0:
      return StreamCase(test);
    case 1:
      return IntoCase(test);
    default:
      return SizeCase(test);
  }
}

const Registration registration({"scaling", 3000, 0xC6C22628875438D8u, Run});

}  // namespace

}  // namespace vn::cases
