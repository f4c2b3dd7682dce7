// Regions made from pixels and shown on a device.
#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

constexpr int32_t kSide = 48;
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

HEADLESS_TEST(RegionPaint, StaysWithinTheRegion) {
  const DisplayScope display(24);
  const ScreenDC screen;
  const HDC context = screen.get();
  Random random(73);
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(testing::Message() << "round " << round);
    const int32_t width = random.Between(1, 30), height = random.Between(1, 30);
    RandomBitmap bitmap(random, width, height, 24);
    Vn_ClearBitmap(bitmap);
    if (!random.Chance(5)) SelectEllipse(bitmap, RandomRect(random, -5, 35));
    const RECT to = {random.Between(0, 9), random.Between(0, 9), random.Between(10, kSide),
                     random.Between(10, kSide)};
    const RegionTransform onto = {VIEW_TOP_FIRST, to.right - to.left,
                                  bitmap->Width,  to.bottom - to.top,
                                  bitmap->Height, to.left,
                                  to.top};
    HRGN handle = nullptr;
    ASSERT_EQ(Vn_GetBitmapRgnHandle(bitmap, &onto, &handle), OK);
    const Region shape(handle);
    PatBlt(context, 0, 0, kSide, kSide, WHITENESS);  // the picture is black
    const Region clip(CreateRectRgn(1, 1, 3, 3));
    SelectClipRgn(context, clip.get());
    ASSERT_EQ(Vn_PaintRgnDC(context, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY), OK);
    EXPECT_EQ(GetPixel(context, 5, 5), CLR_INVALID) << "the caller's clip is back";
    SelectClipRgn(context, nullptr);
    for (int32_t y = 0; y < kSide; ++y) {
      for (int32_t x = 0; x < kSide; ++x) {
        const bool painted = PtInRegion(shape.get(), x, y) && x >= to.left && x < to.right &&
                             y >= to.top && y < to.bottom;
        ASSERT_EQ(GetPixel(context, x, y), painted ? 0u : 0xFFFFFFu) << x << ", " << y;
      }
    }
  }
  EXPECT_EQ(Vn_PaintRgnDC(context, nullptr, nullptr, nullptr, nullptr, nullptr, SRCCOPY),
            ERR_NO_BITMAP);
  Bitmap bitmap(1, 1, 8);
  EXPECT_EQ(Vn_PaintRgnDC(context, bitmap, nullptr, nullptr, nullptr, nullptr, SRCCOPY),
            ERR_INVALID_PARAMETER);
}

TEST(RegionFrame, RefusesFramesThatThereAreNot) {
  const ScreenDC screen;
  Plain plain(30, 20);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), plain, nullptr, 8), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), nullptr, nullptr, 8), ERR_NO_BITMAP);
}

}  // namespace
}  // namespace vn::test
