// Palette objects, the fixed palettes, and the palettes of bitmaps.
#include <bit>
#include <cstring>

#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/failure_walk.h"
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

TEST(FixedPalettes, HoldTheLevelsThatShiftsCountOn) {
  const int levels[] = {0, 36, 73, 109, 146, 182, 219, 255};
  const Colors colors = Fixed(8), sixteen = Fixed(4);
  for (size_t i = 0; i < 256; ++i) {
    EXPECT_EQ(colors[i], Quad(levels[i >> 5], levels[i >> 2 & 7], static_cast<int>(i & 3) * 85))
        << i;
  }
  for (int i = 1; i < 8; ++i) {
    const RGBQUAD full = Quad(i & 1 ? 255 : 0, i & 2 ? 255 : 0, i & 4 ? 255 : 0);
    EXPECT_EQ(sixteen[static_cast<size_t>(8 + i)], full) << i;
  }
  EXPECT_EQ(Vn_IntGetFixedPalette(2), nullptr);
}

TEST(FixedPalettes, BitCounts) {
  for (unsigned i = 0; i < 256; ++i)
    EXPECT_EQ(Vn_Get1BitOnTable()[i], std::popcount(i));
}

TEST(PaletteObjects, CarryColoursAndFlagsBothWays) {
  Random random(1);
  Colors colors = RandomColors(random, 256);
  for (size_t i = 0; i < 256; ++i)
    colors[i].rgbReserved = static_cast<BYTE>(i % 5);
  for (const uint32_t count : {1u, 2u, 100u, 256u}) {
    const Palette palette(Vn_CreatePalette(colors.data(), count));
    ASSERT_TRUE(palette);
    EXPECT_EQ(Vn_GetPaletteSize(palette.get()), count);
    EXPECT_EQ(Entries(palette.get()), Colors(colors.begin(), colors.begin() + count));
    const Palette copy(Vn_DupPalette(palette.get()));
    EXPECT_NE(copy.get(), palette.get());
    EXPECT_EQ(Entries(copy.get()), Entries(palette.get()));
  }
}

TEST(PaletteObjects, ComparisonLooksAtColoursAlone) {
  Colors colors = Fixed(4);
  const Palette palette(Vn_CreateFixedPalette(4));
  colors[5].rgbReserved = 1;
  EXPECT_EQ(Vn_CompareHandleToPalette(palette.get(), colors.data(), 16), 1);
  colors[15].rgbGreen = 254;
  EXPECT_EQ(Vn_CompareHandleToPalette(palette.get(), colors.data(), 16), 0);
  EXPECT_EQ(Vn_CompareHandleToPalette(nullptr, colors.data(), 16), 1);
  // Entries that the palette does not have are not compared.
  const Palette two(Vn_CreatePalette(colors.data(), 2));
  EXPECT_EQ(Vn_CompareHandleToPalette(two.get(), colors.data(), 16), 1);
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

HEADLESS_TEST(PaletteObjects, FailuresLeaveNothingBehind) {
  const Palette palette(Vn_CreateFixedPalette(8));
  for (const Headless_Operation family : {HEADLESS_MEMORY, HEADLESS_OBJECT}) {
    WalkFailures(family, [&](FailureRound& round) {
      const Palette gray(round.Run([] { return Vn_CreateGrayPalette(8); }));
      EXPECT_EQ(!gray, round.Failed());
    });
    WalkFailures(family, [&](FailureRound& round) {
      const Palette copy(round.Run([&] { return Vn_DupPalette(palette.get()); }));
      EXPECT_EQ(!copy, round.Failed());
    });
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

TEST(BitmapPalette, GrayClasses) {
  const auto classOf = [](const Colors& colors) {
    const int32_t bits = colors.size() == 2 ? 1 : colors.size() == 16 ? 4 : 8;
    Bitmap bitmap(1, 1, bits, VIEW_BOTTOM_FIRST, ORDER_BGR, colors.data());
    return Vn_IsGrayScaleBitmap(bitmap);
  };
  const auto ramp = [](int count, int start, int step) {
    Colors colors;
    for (int i = 0, v = start; i < count; ++i, v += step)
      colors.push_back(Quad(v, v, v));
    return colors;
  };
  for (const int count : {2, 16, 256}) {
    const int step = 255 / (count - 1);
    EXPECT_EQ(classOf(ramp(count, 0, step)), 1);
    EXPECT_EQ(classOf(ramp(count, 255, -step)), 2);
    Colors broken = ramp(count, 0, step);
    broken[1] = Quad(7, 7, 7);
    EXPECT_EQ(classOf(broken), 3);
    broken[1] = Quad(7, 7, 8);
    EXPECT_EQ(classOf(broken), 0);
  }
  EXPECT_EQ(classOf(ramp(16, 0, 16)), 3) << "the made gray ramp does not reach white";
  EXPECT_EQ(classOf({Quad(5, 5, 5), Quad(0, 0, 0)}), 3) << "falling, but not from white";
}

TEST(BitmapPalette, ReplacedColoursMoveTheActivePalette) {
  const Colors black(2), white(2, Quad(255, 255, 255));
  Bitmap bitmap(3, 2, 1, VIEW_BOTTOM_FIRST, ORDER_BGR, black.data());
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 1, 2, white.data()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Entries(bitmap->Palette), black);
  ASSERT_EQ(Vn_PutBitmapColors(bitmap, 1, 1, white.data()), OK);
  EXPECT_EQ(bitmap->Palette, nullptr);
  EXPECT_EQ(Entries(bitmap->PaintPalette), Fixed(1));
  EXPECT_EQ(bitmap->Flags & (FLAG_FIXED_PALETTE | FLAG_CUSTOM_PALETTE), 0u + FLAG_FIXED_PALETTE);
  // A flags byte makes it another palette, and a gray ramp is a custom one like any other.
  const RGBQUAD flagged = Quad(0, 0, 0, 4);
  ASSERT_EQ(Vn_PutBitmapColors(bitmap, 0, 1, &flagged), OK);
  EXPECT_EQ(Entries(bitmap->Palette), (Colors{flagged, white[0]}));
  EXPECT_EQ(bitmap->PaintPalette, nullptr);
  EXPECT_EQ(Vn_IsGrayScaleBitmap(bitmap), 1);
  EXPECT_EQ(bitmap->Flags & (FLAG_FIXED_PALETTE | FLAG_CUSTOM_PALETTE | FLAG_GRAY_PALETTE),
            0u + FLAG_CUSTOM_PALETTE);
}

HEADLESS_TEST(BitmapPalette, PaletteThatCannotBeMadeIsNotReported) {
  BitmapHandle record;
  WalkFailures(HEADLESS_OBJECT, [&](FailureRound& round) {
    EXPECT_EQ(round.Run([&] {
      return Vn_CreateBitmap(&record, STORAGE_AUTO, 4, 4, 8, 0, nullptr, VIEW_TOP_FIRST);
    }),
              OK);
    EXPECT_EQ(record.PaintPalette == nullptr, round.Failed());
    EXPECT_TRUE(record.Flags & FLAG_FIXED_PALETTE);
    Vn_FreeBitmap(&record);
  });
}

}  // namespace
}  // namespace vn::test
