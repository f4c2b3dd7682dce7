// Palette objects, the fixed palettes, and the palettes of bitmaps.
#include <array>
#include <bit>
#include <cstring>

#include "color/color_match.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/slow_color.h"

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

// A palette object for the length of a test.
class Palette {
 public:
  explicit Palette(HPALETTE handle) : handle_(handle) {}
  Palette(const Palette&) = delete;
  Palette& operator=(const Palette&) = delete;
  ~Palette() {
    if (handle_) DeleteObject(handle_);
  }
  operator HPALETTE() const { return handle_; }

 private:
  HPALETTE handle_;
};

bool IsIndexForm(BitmapHandle* bitmap) {
  uint16_t words[256];
  std::memcpy(words, bitmap->DibColors, sizeof words);
  for (int i = 0; i < 256; ++i) {
    if (words[i] != i) return false;
  }
  return (bitmap->Flags & FLAG_PALETTE_INDEXES) != 0;
}

TEST(FixedPalettes, HoldTheLevelsThatShiftsCountOn) {
  const int levels[] = {0, 36, 73, 109, 146, 182, 219, 255};
  const Colors colors = Fixed(8);
  for (size_t i = 0; i < 256; ++i) {
    EXPECT_EQ(colors[i], Quad(levels[i >> 5], levels[i >> 2 & 7], static_cast<int>(i & 3) * 85))
        << i;
  }
  EXPECT_EQ(Fixed(1), (Colors{Quad(0, 0, 0), Quad(255, 255, 255)}));
  const Colors sixteen = Fixed(4);
  EXPECT_EQ(sixteen[5], Quad(128, 0, 128));
  EXPECT_EQ(sixteen[7], Quad(128, 128, 128));
  EXPECT_EQ(sixteen[8], Quad(192, 192, 192));
  for (int i = 1; i < 8; ++i) {
    const RGBQUAD full = Quad(i & 1 ? 255 : 0, i & 2 ? 255 : 0, i & 4 ? 255 : 0);
    EXPECT_EQ(sixteen[static_cast<size_t>(8 + i)], full) << i;
  }
  for (const uint32_t bits : {0u, 2u, 3u, 5u, 16u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Vn_IntGetFixedPalette(bits), nullptr);
  }
}

TEST(FixedPalettes, AreCopiedByDepthAndZeroIsTheGrayRamp) {
  Colors colors(256, Quad(9, 9, 9, 9));
  for (const uint32_t bits : {1u, 4u, 8u}) {
    EXPECT_EQ(Vn_GetFixedPalette(colors.data(), bits), OK);
    const Colors fixed = Fixed(bits);
    EXPECT_TRUE(std::equal(fixed.begin(), fixed.end(), colors.begin()));
  }
  EXPECT_EQ(Vn_GetFixedPalette(colors.data(), 0), OK);
  for (int i = 0; i < 256; ++i)
    EXPECT_EQ(colors[static_cast<size_t>(i)], Quad(i, i, i));
  for (const uint32_t bits : {2u, 3u, 5u, 16u}) {
    EXPECT_EQ(Vn_GetFixedPalette(colors.data(), bits), ERR_INVALID_PARAMETER);
  }
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
    ASSERT_NE(palette, nullptr);
    EXPECT_EQ(Vn_GetPaletteSize(palette), count);
    EXPECT_EQ(Entries(palette), Colors(colors.begin(), colors.begin() + count));
    const Palette copy(Vn_DupPalette(palette));
    EXPECT_NE(static_cast<HPALETTE>(copy), static_cast<HPALETTE>(palette));
    EXPECT_EQ(Entries(copy), Entries(palette));
  }
  const Palette palette(Vn_CreatePalette(colors.data(), 10));
  Colors part(8, Quad(7, 7, 7, 7));
  EXPECT_EQ(Vn_GetPaletteEntries(palette, 6, 8, part.data()), 4u);
  EXPECT_EQ(part[3], colors[9]);
  EXPECT_EQ(part[4], Quad(7, 7, 7, 7)) << "nothing beyond the entries that there are";
  EXPECT_EQ(Vn_SetPaletteEntries(palette, 2, 2, colors.data() + 100), 2u);
  EXPECT_EQ(Entries(palette)[3], colors[101]);
  EXPECT_EQ(Entries(palette)[4], colors[4]);
}

TEST(PaletteObjects, NoPaletteGivesNothing) {
  Colors colors(4, Quad(7, 7, 7));
  EXPECT_EQ(Vn_GetPaletteSize(nullptr), 0u);
  EXPECT_EQ(Vn_GetPaletteEntries(nullptr, 0, 4, colors.data()), 0u);
  EXPECT_EQ(Vn_SetPaletteEntries(nullptr, 0, 4, colors.data()), 0u);
  EXPECT_EQ(colors[0], Quad(7, 7, 7));
  EXPECT_EQ(Vn_DupPalette(nullptr), nullptr);
  EXPECT_EQ(Vn_CreatePalette(colors.data(), 257), nullptr);
}

TEST(PaletteObjects, GrayRampsEndBelowWhite) {
  for (const uint32_t bits : {0u, 1u, 4u, 8u}) {
    const Palette palette(Vn_CreateGrayPalette(bits));
    const Colors colors = Entries(palette);
    const int count = 1 << (bits ? bits : 8);
    ASSERT_EQ(colors.size(), static_cast<size_t>(count));
    for (int k = 0; k < count; ++k) {
      const int level = k * (256 / count);
      EXPECT_EQ(colors[static_cast<size_t>(k)], Quad(level, level, level));
    }
  }
}

TEST(PaletteObjects, FixedPalettesByRangesOfDepths) {
  const uint32_t sizes[] = {2, 2, 16, 16, 16, 256, 256, 256, 256};
  for (uint32_t bits = 0; bits <= 8; ++bits) {
    const Palette palette(Vn_CreateFixedPalette(bits));
    EXPECT_EQ(Vn_GetPaletteSize(palette), sizes[bits]);
    EXPECT_EQ(Entries(palette), Fixed(sizes[bits] == 2 ? 1 : sizes[bits] == 16 ? 4 : 8));
  }
  EXPECT_EQ(Vn_CreateFixedPalette(9), nullptr);
  EXPECT_EQ(Vn_CreateFixedPalette(0xFFFFFFFF), nullptr);
}

TEST(PaletteObjects, ComparisonLooksAtColoursAlone) {
  Colors colors = Fixed(4);
  const Palette palette(Vn_CreateFixedPalette(4));
  colors[5].rgbReserved = 1;
  EXPECT_EQ(Vn_CompareHandleToPalette(palette, colors.data(), 16), 1);
  colors[15].rgbGreen = 254;
  EXPECT_EQ(Vn_CompareHandleToPalette(palette, colors.data(), 16), 0);
  EXPECT_EQ(Vn_CompareHandleToPalette(palette, colors.data(), 15), 1);
  EXPECT_EQ(Vn_CompareHandleToPalette(nullptr, colors.data(), 16), 1);
  // Entries that the palette does not have are not compared.
  const Palette two(Vn_CreatePalette(colors.data(), 2));
  EXPECT_EQ(Vn_CompareHandleToPalette(two, colors.data(), 16), 1);
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
  const Colors colors = Entries(palette);
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
      EXPECT_EQ(gray == nullptr, round.Failed());
    });
    WalkFailures(family, [&](FailureRound& round) {
      const Palette copy(round.Run([&] { return Vn_DupPalette(palette); }));
      EXPECT_EQ(copy == nullptr, round.Failed());
    });
  }
}

TEST(BitmapPalette, CreateBitmapChoosesThePalette) {
  const Colors custom{Quad(1, 2, 3), Quad(4, 5, 6)};
  Bitmap own(3, 2, 1, VIEW_TOP_FIRST, ORDER_RGB, custom.data());
  EXPECT_EQ(own->PaintPalette, nullptr);
  EXPECT_EQ(Entries(own->Palette), custom);
  EXPECT_TRUE(IsIndexForm(own));
  EXPECT_EQ(own->Flags & (FLAG_FIXED_PALETTE | FLAG_GRAY_PALETTE | FLAG_CUSTOM_PALETTE), 0u);
  EXPECT_EQ(own->ViewOrigin, uint32_t{VIEW_TOP_FIRST});

  Bitmap fixed(3, 2, 4);
  EXPECT_EQ(fixed->Palette, nullptr);
  EXPECT_EQ(Entries(fixed->PaintPalette), Fixed(4));
  EXPECT_TRUE(IsIndexForm(fixed));
  EXPECT_TRUE(fixed->Flags & FLAG_FIXED_PALETTE);

  // Depth 0: gray of 8 bits, whatever table comes with it.
  Bitmap gray(3, 2, 0, VIEW_BOTTOM_FIRST, ORDER_BGR, custom.data());
  EXPECT_EQ(gray->BitsPerPixel, 8);
  EXPECT_TRUE(gray->Flags & FLAG_GRAY_PALETTE);
  EXPECT_EQ(Vn_IsGrayScaleBitmap(gray), 1);
  EXPECT_TRUE(IsIndexForm(gray));

  for (const int32_t bits : {16, 24, 32}) {
    Bitmap color(3, 2, bits, VIEW_BOTTOM_FIRST, ORDER_RGB, custom.data());
    EXPECT_EQ(color->ColorOrder, uint32_t{ORDER_RGB});
    EXPECT_EQ(color->Palette, nullptr);
    EXPECT_EQ(color->PaintPalette, nullptr);
  }
  BitmapHandle record;
  EXPECT_EQ(Vn_CreateBitmap(nullptr, STORAGE_AUTO, 1, 1, 8, 0, nullptr, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_CreateBitmap(&record, STORAGE_AUTO, 1, 1, 7, 0, nullptr, 0), ERR_BITS_PER_PIXEL);
  EXPECT_EQ(Vn_CreateBitmap(&record, STORAGE_AUTO, 0, 1, 8, 0, nullptr, 0), ERR_EMPTY_BITMAP);
  EXPECT_EQ(record.PaintPalette, nullptr) << "no palette without storage";
}

TEST(BitmapPalette, GetColorsReadsTheActivePalette) {
  Bitmap bitmap(3, 2, 4);
  Colors colors(17, Quad(0, 0, 0, 9));
  EXPECT_EQ(Vn_GetBitmapColors(bitmap, 2, 3, colors.data()), OK);
  EXPECT_EQ(colors[0], Fixed(4)[2]);
  EXPECT_EQ(colors[3], Quad(0, 0, 0, 9));
  EXPECT_EQ(Vn_GetBitmapColors(bitmap, 0, 17, colors.data()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_GetBitmapColors(bitmap, 0, 0, colors.data()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_GetBitmapColors(nullptr, 0, 1, colors.data()), ERR_NO_BITMAP);
}

TEST(BitmapPalette, PutColorsMovesBetweenTheTwoFields) {
  Bitmap bitmap(3, 2, 1);
  const Colors red{Quad(255, 0, 0)};
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 1, 1, red.data()), OK);
  EXPECT_EQ(bitmap->PaintPalette, nullptr);
  EXPECT_EQ(Entries(bitmap->Palette), (Colors{Quad(0, 0, 0), Quad(255, 0, 0)}));
  EXPECT_TRUE(bitmap->Flags & FLAG_CUSTOM_PALETTE);
  EXPECT_FALSE(bitmap->Flags & FLAG_FIXED_PALETTE);
  EXPECT_TRUE(IsIndexForm(bitmap));

  // Back to black and white: the fixed palette again.
  const Colors white{Quad(255, 255, 255)};
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 1, 1, white.data()), OK);
  EXPECT_EQ(bitmap->Palette, nullptr);
  EXPECT_EQ(Entries(bitmap->PaintPalette), Fixed(1));
  EXPECT_TRUE(bitmap->Flags & FLAG_FIXED_PALETTE);
  EXPECT_FALSE(bitmap->Flags & FLAG_CUSTOM_PALETTE);

  // A flags byte makes it another palette.
  const Colors flagged{Quad(255, 255, 255, 4)};
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 1, 1, flagged.data()), OK);
  EXPECT_TRUE(bitmap->Flags & FLAG_CUSTOM_PALETTE);
  EXPECT_EQ(Entries(bitmap->Palette)[1], flagged[0]);
}

TEST(BitmapPalette, PutColorsTakesAGrayRampForACustomPalette) {
  Bitmap bitmap(3, 2, 8);
  Colors ramp(256);
  Vn_GetFixedPalette(ramp.data(), 0);
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 0, 256, ramp.data()), OK);
  EXPECT_EQ(bitmap->PaintPalette, nullptr);
  EXPECT_NE(bitmap->Palette, nullptr);
  EXPECT_EQ(bitmap->Flags & (FLAG_GRAY_PALETTE | FLAG_CUSTOM_PALETTE | FLAG_FIXED_PALETTE),
            uint32_t{FLAG_CUSTOM_PALETTE});
  EXPECT_EQ(Vn_IsGrayScaleBitmap(bitmap), 1);
}

TEST(BitmapPalette, PutColorsChecksItsRange) {
  Bitmap bitmap(3, 2, 8);
  const HPALETTE before = bitmap->PaintPalette;
  const Colors colors(8);
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 250, 7, colors.data()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, -1, 1, colors.data()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 0x7FFFFFFF, 0x7FFFFFFF, colors.data()),
            ERR_INVALID_PARAMETER);
  EXPECT_EQ(bitmap->PaintPalette, before);
  EXPECT_EQ(Vn_PutBitmapColors(bitmap, 0, 0, colors.data()), OK);
  EXPECT_NE(bitmap->PaintPalette, before);
  EXPECT_EQ(Entries(bitmap->PaintPalette), Fixed(8));

  Bitmap color(3, 2, 24);
  EXPECT_EQ(Vn_PutBitmapColors(color, 0, 0, colors.data()), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_PutBitmapColors(nullptr, 0, 0, colors.data()), ERR_NO_BITMAP);
  BitmapHandle record;
  Vn_InitBitmap(&record, 1, 1, 8);
  EXPECT_EQ(Vn_PutBitmapColors(&record, 0, 1, colors.data()), ERR_NO_BITMAP);
}

TEST(BitmapPalette, TwoFormsOfTheTable) {
  Random random(2);
  const Colors colors = RandomColors(random, 256);
  Bitmap bitmap(3, 2, 4, VIEW_BOTTOM_FIRST, ORDER_BGR, colors.data());
  EXPECT_EQ(Vn_CreatePaletteColors(bitmap), 1);
  EXPECT_FALSE(bitmap->Flags & FLAG_PALETTE_INDEXES);
  for (size_t i = 0; i < 256; ++i) {
    EXPECT_EQ(bitmap->DibColors[i], i < 16 ? colors[i] : Quad(0, 0, 0)) << i;
  }
  bitmap->DibColors[200] = Quad(1, 2, 3, 4);
  EXPECT_EQ(Vn_CreatePaletteIndexes(bitmap), OK);
  EXPECT_TRUE(IsIndexForm(bitmap));
  EXPECT_EQ(bitmap->DibColors[200], Quad(1, 2, 3, 4)) << "the second half stays";

  // Only the active field counts.
  bitmap->Flags |= FLAG_FIXED_PALETTE;
  EXPECT_EQ(Vn_CreatePaletteColors(bitmap), 0);
  EXPECT_EQ(bitmap->DibColors[1], Quad(0, 0, 0));
  EXPECT_TRUE(bitmap->Flags & FLAG_PALETTE_INDEXES);
  bitmap->Flags &= ~uint32_t{FLAG_FIXED_PALETTE};

  Bitmap color(3, 2, 24);
  EXPECT_EQ(Vn_CreatePaletteColors(color), 0);
  EXPECT_EQ(Vn_CreatePaletteColors(nullptr), 0);
  EXPECT_EQ(Vn_CreatePaletteIndexes(nullptr), ERR_NO_BITMAP);
}

TEST(BitmapPalette, TrueAndFixedPalettesFromTheRecord) {
  Random random(3);
  const Colors colors = RandomColors(random, 16);
  Bitmap bitmap(3, 2, 4, VIEW_BOTTOM_FIRST, ORDER_BGR, colors.data());
  EXPECT_EQ(Vn_CreatePaletteColors(bitmap), 1);
  bitmap->DibColors[3] = Quad(1, 2, 3, 1);
  EXPECT_EQ(Vn_CreateBitmapTruePalette(bitmap), 1);
  EXPECT_EQ(Entries(bitmap->Palette)[3], Quad(1, 2, 3, 1));
  EXPECT_EQ(Entries(bitmap->Palette)[4], colors[4]);
  EXPECT_TRUE(IsIndexForm(bitmap));

  EXPECT_EQ(Vn_CreateBitmapFixedPalette(bitmap), 1);
  EXPECT_EQ(Entries(bitmap->PaintPalette), Fixed(4));
  EXPECT_FALSE(bitmap->Flags & FLAG_FIXED_PALETTE);
  const Palette made(bitmap->PaintPalette);
  bitmap->PaintPalette = nullptr;
  Bitmap color(3, 2, 24);
  EXPECT_EQ(Vn_CreateBitmapFixedPalette(color), 0);
  EXPECT_EQ(color->PaintPalette, nullptr);
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
  EXPECT_EQ(classOf({Quad(0, 0, 0), Quad(128, 128, 128)}), 3);
  EXPECT_EQ(classOf({Quad(5, 5, 5), Quad(0, 0, 0)}), 3) << "falling, but not from white";

  Bitmap color(1, 1, 16);
  EXPECT_EQ(Vn_IsGrayScaleBitmap(color), 0);
  Bitmap none(1, 1, 8);
  DeleteObject(std::exchange(none->PaintPalette, nullptr));
  EXPECT_EQ(Vn_IsGrayScaleBitmap(none), 0);
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

TEST(FillRowColor, WritesTheFormatOfTheBitmap) {
  const COLORREF color = RGB(250, 130, 7);
  for (const uint32_t order : {uint32_t{ORDER_BGR}, uint32_t{ORDER_RGB}}) {
    for (const uint32_t bits : {16u, 24u, 32u}) {
      Bitmap bitmap(9, 1, static_cast<int32_t>(bits), VIEW_BOTTOM_FIRST, order);
      for (uint32_t width = 0; width < 9; ++width) {
        Bytes row(40, 0x55), expected = row;
        EXPECT_EQ(FillRowColor(bitmap, color, row.data(), width), 1);
        for (size_t x = 0; x < width; ++x)
          SetSlowPixel(expected, x, bits, order, {250, 130, 7});
        EXPECT_EQ(row, expected) << bits << " bits, " << width << " pixels";
      }
    }
  }
  // Whole bytes of the nearest index, up to 8 bits.
  const Bytes whole[] = {Bytes{0xFF, 0xFF, 0x55}, Bytes{0xBB, 0xBB, 0xBB, 0xBB, 0xBB, 0x55}};
  Bytes row(3, 0x55);
  Bitmap one(9, 1, 1);
  EXPECT_EQ(FillRowColor(one, RGB(200, 200, 200), row.data(), 9), 1);
  EXPECT_EQ(row, whole[0]);
  row.assign(6, 0x55);
  Bitmap four(9, 1, 4);
  EXPECT_EQ(FillRowColor(four, RGB(255, 255, 0), row.data(), 9), 1);
  EXPECT_EQ(row, whole[1]);
  row.assign(3, 0x55);
  Bitmap eight(2, 1, 8);
  EXPECT_EQ(FillRowColor(eight, RGB(255, 0, 85), row.data(), 2), 1);
  EXPECT_EQ(row, (Bytes{0xE1, 0xE1, 0x55}));
}

}  // namespace
}  // namespace vn::test
