// Regions made from pixels and shown on a device: what is refused. The rest is in the numbered cases.
#include <gtest/gtest.h>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

TEST(RegionColor, AColourThatIsNowhereSelectsNothing) {
  Bitmap bitmap(5, 4, 24);
  EXPECT_EQ(Vn_SetBitmapRgnColor(bitmap, 0x123456, REGION_COMBINE_REPLACE), OK);
  uint32_t area = 1;
  EXPECT_EQ(Vn_GetBitmapRgnArea(bitmap, &area), OK);
  EXPECT_TRUE(Vn_BitmapHasRgn(bitmap) && area == 0);
  EXPECT_EQ(Vn_SetBitmapRgnColor(bitmap, 0, 7), ERR_INVALID_PARAMETER);
  BitmapHandle none{};
  EXPECT_EQ(Vn_SetBitmapRgnColor(&none, 0, 1), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_SetBitmapRgnColor(nullptr, 0, 7), ERR_NO_BITMAP);
}

TEST(RegionPaint, RefusesWhatItCannotPaint) {
  const ScreenDC screen;
  Bitmap bitmap(1, 1, 8);
  const auto paint = [&](BitmapHandle* picture) {
    return Vn_PaintRgnDC(screen.get(), picture, nullptr, nullptr, nullptr, nullptr, SRCCOPY);
  };
  EXPECT_EQ(paint(nullptr), ERR_NO_BITMAP);
  EXPECT_EQ(paint(bitmap), ERR_INVALID_PARAMETER);
}

TEST(RegionFrame, RefusesFramesThatThereAreNot) {
  const ScreenDC screen;
  Plain plain(30, 20);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), plain, nullptr, 8), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), nullptr, nullptr, 8), ERR_NO_BITMAP);
}

}  // namespace
}  // namespace vn::test
