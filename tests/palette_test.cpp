// Palette objects, the fixed palettes, and the palettes of bitmaps.
#include <bit>
#include <cstring>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

using Palette = OwnedObject<HPALETTE>;

TEST(FixedPalettes, BitCounts) {
  for (unsigned i = 0; i < 256; ++i)
    EXPECT_EQ(Vn_Get1BitOnTable()[i], std::popcount(i));
}

HEADLESS_TEST(PaletteObjects, SystemPaletteOnPaletteDevicesOnly) {
  {
    const DisplayScope display(24);
    EXPECT_EQ(Vn_CreateSystemPalette(), nullptr);
  }
  const DisplayScope display(8);
  const Palette palette(Vn_CreateSystemPalette());
  const ScreenDC screen;
  PALETTEENTRY system[256];
  ASSERT_EQ(GetSystemPaletteEntries(screen.get(), 0, 256, system), 256u);
  RGBQUAD colors[256];
  ASSERT_EQ(Vn_GetPaletteEntries(palette.get(), 0, 256, colors), 256u);
  for (size_t i = 0; i < 256; ++i) {
    const PALETTEENTRY& e = system[i];
    const RGBQUAD expected = {e.peBlue, e.peGreen, e.peRed, e.peFlags};
    EXPECT_EQ(std::memcmp(&colors[i], &expected, sizeof expected), 0) << i;
  }
}

TEST(BitmapPalette, AFixedPaletteIsMadeWithoutBecomingTheActiveOne) {
  Bitmap bitmap(3, 2, 4, VIEW_BOTTOM_FIRST, ORDER_BGR, Colors(16, RGBQUAD{3, 2, 1, 0}).data());
  EXPECT_EQ(Vn_CreateBitmapFixedPalette(bitmap), 1);
  EXPECT_EQ(Vn_CompareHandleToPalette(bitmap->PaintPalette, Vn_IntGetFixedPalette(4), 16), 1);
  EXPECT_FALSE(bitmap->Flags & FLAG_FIXED_PALETTE);
  const Palette made(std::exchange(bitmap->PaintPalette, nullptr));
  Bitmap color(3, 2, 24);
  EXPECT_EQ(Vn_CreateBitmapFixedPalette(color), 0);
}

}  // namespace
}  // namespace vn::test
