// Device contexts over bitmaps: what is drawn on them is in the bitmap, confined to its region.
#include <vncore/vncore.h>
#include "tests/support/bitmaps.h"

namespace vn::test {
namespace {

constexpr uint32_t kWidth = 23, kHeight = 17;
constexpr RECT kDrawn = {3, 2, 14, 9};  // as seen
constexpr RECT kHole = {5, 0, 11, 17};

bool Inside(const RECT& rect, int32_t x, int32_t y) {
  return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

TEST(DeviceContext, DrawsIntoTheBitmapWithinItsRegion) {
  if (GetVersion() & 0x80000000u) GTEST_SKIP() << "needs sections";
  Random random(11);
  for (const int32_t bits : {1, 4, 8, 24}) {
    for (const uint32_t origin : {VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST}) {
      for (const bool region : {false, true}) {
        SCOPED_TRACE(Told(bits, "bits, origin", origin, ",", region));
        Bitmap bitmap(kWidth, kHeight, bits, origin);
        FillRandom(bitmap, random);
        Pixels expected = SeenPixels(bitmap);
        const RegionTransform asSeen = {VIEW_TOP_FIRST, 1, 1, 1, 1, 0, 0};
        if (region) {
          ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, &asSeen, &kHole, REGION_COMBINE_REPLACE), OK);
        }
        const HDC context = Vn_CreateVornDC(bitmap);
        ASSERT_NE(context, HDC{});
        EXPECT_EQ(bitmap->ViewOrigin, uint32_t{VIEW_BOTTOM_FIRST});
        PatBlt(context, kDrawn.left, kDrawn.top, kDrawn.right - kDrawn.left,
               kDrawn.bottom - kDrawn.top, DSTINVERT);
        EXPECT_NE(Vn_DeleteVornDC(context), 0);

        for (int32_t y = kDrawn.top; y < kDrawn.bottom; ++y) {
          for (int32_t x = kDrawn.left; x < kDrawn.right; ++x) {
            if (region && !Inside(kHole, x, y)) continue;
            uint32_t& pixel = expected[y][x];
            pixel = ~pixel & ((1u << bits) - 1);
          }
        }
        // The bytes behind a row's pixels are nobody's.
        EXPECT_EQ(SeenPixels(bitmap), expected);
      }
    }
  }
}

}  // namespace
}  // namespace vn::test
