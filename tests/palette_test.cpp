// Palette objects, the fixed palettes, and the palettes of bitmaps.
#include <bit>
#include <cstring>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

static bool operator==(const RGBQUAD& a, const RGBQUAD& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

namespace vn::test {
namespace {

RGBQUAD Quad(int red, int green, int blue, int flags = 0) {
  return {static_cast<BYTE>(blue), static_cast<BYTE>(green), static_cast<BYTE>(red),
          static_cast<BYTE>(flags)};
}

Colors Fixed(uint32_t bits) {
  const RGBQUAD* colors = Vn_IntGetFixedPalette(bits);
  return {colors, colors + (size_t{1} << bits)};
}

Colors Entries(HPALETTE palette) {
  Colors colors(300, Quad(1, 2, 3, 4));
  colors.resize(Vn_GetPaletteEntries(palette, 0, 256, colors.data()));
  return colors;
}

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
  PALETTEENTRY system[256];
  const HDC screen = GetDC(nullptr);
  ASSERT_EQ(GetSystemPaletteEntries(screen, 0, 256, system), 256u);
  ReleaseDC(nullptr, screen);
  const Colors colors = Entries(palette.get());
  ASSERT_EQ(colors.size(), 256u);
  for (size_t i = 0; i < 256; ++i) {
    EXPECT_EQ(colors[i],
              Quad(system[i].peRed, system[i].peGreen, system[i].peBlue, system[i].peFlags));
  }
}

TEST(BitmapPalette, AFixedPaletteIsMadeWithoutBecomingTheActiveOne) {
  const Colors colors(16, Quad(1, 2, 3));
  Bitmap bitmap(3, 2, 4, VIEW_BOTTOM_FIRST, ORDER_BGR, colors.data());
  EXPECT_EQ(Vn_CreateBitmapFixedPalette(bitmap), 1);
  EXPECT_EQ(Entries(bitmap->PaintPalette), Fixed(4));
  EXPECT_FALSE(bitmap->Flags & FLAG_FIXED_PALETTE);
  const Palette made(std::exchange(bitmap->PaintPalette, nullptr));
  Bitmap color(3, 2, 24);
  EXPECT_EQ(Vn_CreateBitmapFixedPalette(color), 0);
}

}  // namespace
}  // namespace vn::test
