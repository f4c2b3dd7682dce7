// The plan of a paint against its tables, the arguments of Vn_PaintDC, and the display mode.
#include <cstring>

#include "kernel/guards.h"
#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"
#include "tests/support/painting.h"
#include "tests/support/slow_paint.h"

namespace vn::test {
namespace {

#ifndef _WIN32

HEADLESS_TEST(PaintPlan, FlagsForEveryDeviceDepthAndMode) {
  Random random(61);
  const Colors odd4 = RandomColors(random, 16), odd8 = RandomColors(random, 256);
  struct Subject {
    int32_t bits;
    const RGBQUAD* colors;
  };
  const Subject subjects[] = {{1, kBlackWhite}, {1, kWhiteBlack}, {1, kRedBlue},    {4, nullptr},
                              {4, odd4.data()}, {8, nullptr},     {8, odd8.data()}, {16, nullptr},
                              {24, nullptr},    {32, nullptr}};
  for (const int32_t rawBits : {1, 4, 8, 16, 24, 32}) {
    const DisplayScope display(Screen(rawBits));
    const ScreenDC screen;
    for (const Subject& subject : subjects) {
      Bitmap bitmap(4, 4, subject.bits, VIEW_TOP_FIRST, ORDER_BGR, subject.colors);
      for (uint32_t mode = 0; mode < 256; ++mode) {
        const DisplayModeScope scope(~0u, mode);
        int32_t deviceBits = -1, kind = -1;
        Vn_GetDitherFlags(screen.get(), bitmap, &deviceBits, &kind);
        ASSERT_EQ(deviceBits, SlowDeviceBits(rawBits));
        ASSERT_EQ(kind, SlowKind(bitmap, mode, deviceBits))
            << subject.bits << " bits on " << rawBits << ", mode " << mode;
      }
    }
  }
}

HEADLESS_TEST(PaintPlan, KnownFlags) {
  const auto kindOf = [](BitmapHandle* bitmap, uint32_t mode, int32_t rawBits,
                         int32_t technology = DT_RASDISPLAY) {
    Headless_Display display = Screen(rawBits);
    display.technology = technology;
    const DisplayScope scope(display);
    const ScreenDC screen;
    const DisplayModeScope modeScope(~0u, mode);
    int32_t deviceBits = -1, kind = -1;
    Vn_GetDitherFlags(screen.get(), bitmap, &deviceBits, &kind);
    return kind;
  };
  Bitmap falling(4, 4, 1, VIEW_TOP_FIRST, ORDER_BGR, kWhiteBlack);
  EXPECT_EQ(kindOf(falling, kDefaultMode | MODE_BITONAL_GRAY, 8), PAINT_GRAY_INVERTED);
  EXPECT_EQ(kindOf(falling, kDefaultMode | MODE_BITONAL_GRAY, 1), PAINT_DIRECT);
  Bitmap coloured(4, 4, 1, VIEW_TOP_FIRST, ORDER_BGR, kRedBlue);
  EXPECT_EQ(kindOf(coloured, kDefaultMode, 8), PAINT_DIRECT);
  EXPECT_EQ(kindOf(coloured, 0x88, 8), PAINT_DITHER);
  EXPECT_EQ(kindOf(coloured, 0x88, 24), PAINT_DIRECT);
  Bitmap deep(4, 4, 24), packed(4, 4, 16);
  EXPECT_EQ(kindOf(deep, kDefaultMode, 8), PAINT_DITHER);
  EXPECT_EQ(kindOf(deep, kDefaultMode, 16), PAINT_DIRECT);
  EXPECT_EQ(kindOf(deep, MODE_DEVICE_INDEXES, 8), PAINT_DIRECT);
  EXPECT_EQ(kindOf(packed, kDefaultMode, 24), PAINT_EXPAND);
  EXPECT_EQ(kindOf(deep, kDefaultMode, 8, DT_METAFILE), PAINT_DIRECT);
}

HEADLESS_TEST(PaintPlan, PalettesToRealise) {
  const auto paletteOf = [](BitmapHandle* bitmap, uint32_t mode, int32_t rawBits) {
    const DisplayScope display(Screen(rawBits));
    const ScreenDC screen;
    const DisplayModeScope scope(~0u, mode);
    const OwnedObject<HPALETTE> palette(Vn_CreatePaintPalette(screen.get(), bitmap));
    Colors colors(Vn_GetPaletteSize(palette.get()));
    Vn_GetPaletteEntries(palette.get(), 0, static_cast<uint32_t>(colors.size()), colors.data());
    return colors;
  };
  const auto same = [](const Colors& a, const RGBQUAD* b, size_t count) {
    return a.size() == count && std::memcmp(a.data(), b, count * sizeof(RGBQUAD)) == 0;
  };
  Bitmap deep(4, 4, 24);
  EXPECT_TRUE(same(paletteOf(deep, kDefaultMode, 1), Vn_IntGetFixedPalette(1), 2));
  EXPECT_TRUE(same(paletteOf(deep, kDefaultMode, 4), Vn_IntGetFixedPalette(4), 16));
  EXPECT_TRUE(same(paletteOf(deep, kDefaultMode, 8), Vn_IntGetFixedPalette(8), 256));
  EXPECT_TRUE(paletteOf(deep, kDefaultMode, 24).empty());
  EXPECT_TRUE(paletteOf(deep, 0, 8).empty());
  Random random(71);
  const Colors own = RandomColors(random, 256);
  Bitmap paletted(4, 4, 8, VIEW_TOP_FIRST, ORDER_BGR, own.data());
  EXPECT_TRUE(same(paletteOf(paletted, kDefaultMode, 8), own.data(), 256));
  EXPECT_TRUE(same(paletteOf(paletted, kDefaultMode, 24), own.data(), 256));
  for (const RGBQUAD* table : {kBlackWhite, kWhiteBlack}) {
    Bitmap bitonal(4, 4, 1, VIEW_TOP_FIRST, ORDER_BGR, table);
    const Colors ramp = paletteOf(bitonal, MODE_BITONAL_GRAY, 8);
    ASSERT_EQ(ramp.size(), 256u);
    for (uint32_t i = 0; i < 256; ++i) {
      EXPECT_TRUE(ramp[i].rgbRed == i && ramp[i].rgbGreen == i && ramp[i].rgbBlue == i);
    }
  }
  Bitmap bare(4, 4, 8, VIEW_TOP_FIRST, ORDER_BGR, own.data());
  DeleteObject(bare->Palette);
  bare->Palette = nullptr;
  EXPECT_TRUE(paletteOf(bare, kDefaultMode, 8).empty());
}

// Pairs without a row loop are refused before anything is painted.
HEADLESS_TEST(PaintPlan, RefusesPairsWithoutALoop) {
  for (const int32_t rawBits : {1, 4, 24}) {
    const DisplayScope display(Screen(rawBits));
    const ScreenDC screen;
    Bitmap bitmap(4, 4, 1, VIEW_TOP_FIRST, ORDER_BGR, kRedBlue);
    const DisplayModeScope mode(~0u, MODE_DITHER | MODE_FIXED_PALETTE | MODE_BITONAL_VOTE);
    for (const int32_t size : {4, 9}) {
      BandWatch watch;
      const RECT to = RectOf(0, 0, size, size);
      EXPECT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY),
                ERR_INVALID_PARAMETER);
      EXPECT_TRUE(watch.bands.empty());
    }
  }
}

HEADLESS_TEST(PaintPlan, NothingToPaintIsOk) {
  const DisplayScope display(Screen(24));
  const ScreenDC screen;
  Bitmap bitmap(20, 20, 24);
  const RECT all = RectOf(0, 0, 20, 20), far = RectOf(100, 100, 120, 120);
  const RECT half = RectOf(0, 0, 10, 10), turned = RectOf(0, 20, 20, 0), none = RectOf(5, 5, 5, 9);
  struct Case {
    const RECT *source, *sourceClip, *destination, *destinationClip;
  };
  for (const Case& c :
       {Case{&half, &far, &all, nullptr}, Case{nullptr, nullptr, &all, &far},
        Case{&far, nullptr, &all, nullptr}, Case{nullptr, nullptr, &turned, nullptr},
        Case{&half, nullptr, &turned, nullptr}, Case{nullptr, nullptr, &none, nullptr},
        Case{&none, nullptr, &all, nullptr}}) {
    BandWatch watch;
    EXPECT_EQ(Vn_PaintDC(screen.get(), bitmap, c.source, c.sourceClip, c.destination,
                         c.destinationClip, SRCCOPY),
              OK);
    EXPECT_TRUE(watch.bands.empty());
  }
}

#endif

TEST(PaintPlan, ArgumentsAreTested) {
  const ScreenDC screen;
  const RECT to = RectOf(0, 0, 4, 4);
  BitmapHandle empty{};
  EXPECT_EQ(Vn_PaintDC(screen.get(), nullptr, nullptr, nullptr, &to, nullptr, SRCCOPY),
            ERR_NO_BITMAP);
  EXPECT_EQ(Vn_PaintDC(screen.get(), &empty, nullptr, nullptr, &to, nullptr, SRCCOPY),
            ERR_NO_BITMAP);
  Bitmap bitmap(4, 4, 24);
  EXPECT_EQ(Vn_PaintDC(screen.get(), bitmap, nullptr, nullptr, nullptr, nullptr, SRCCOPY),
            ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_PaintDC(nullptr, bitmap, nullptr, nullptr, &to, nullptr, SRCCOPY),
            ERR_INVALID_PARAMETER);
}

TEST(DisplayMode, ReplacesTheBitsOfTheMask) {
  const uint32_t before = Vn_GetDisplayMode();
  EXPECT_EQ(Vn_SetDisplayMode(~0u, 0x1234), before);
  EXPECT_EQ(Vn_GetDisplayMode(), 0x1234u);
  EXPECT_EQ(Vn_SetDisplayMode(0xF0, 0xFF), 0x1234u);
  EXPECT_EQ(Vn_GetDisplayMode(), 0x12F4u);
  EXPECT_EQ(Vn_SetDisplayMode(~0u, before), 0x12F4u);
  EXPECT_EQ(Vn_GetDisplayMode(), before);
}

TEST(DisplayMode, RestoresTheIdentityTable) {
  uint16_t* indexes = CurrentThreadSettings().PaintInfo.Indexes();
  const DisplayModeScope scope(MODE_DEVICE_INDEXES, 0);
  const auto isIdentity = [&] {
    for (uint16_t i = 0; i < 256; ++i) {
      if (indexes[i] != i) return false;
    }
    return true;
  };
  for (const uint32_t mask : {uint32_t{MODE_DEVICE_INDEXES}, 0u}) {
    Vn_SetDisplayMode(MODE_DEVICE_INDEXES, 0);
    indexes[7] = 1000;
    Vn_SetDisplayMode(mask, MODE_DEVICE_INDEXES);
    EXPECT_TRUE(isIdentity());
    EXPECT_EQ(Vn_GetDisplayMode() & MODE_DEVICE_INDEXES, mask);
  }
  Vn_SetDisplayMode(MODE_DEVICE_INDEXES, MODE_DEVICE_INDEXES);
  indexes[7] = 1000;
  Vn_SetDisplayMode(MODE_DEVICE_INDEXES, MODE_DEVICE_INDEXES);
  EXPECT_EQ(indexes[7], 1000) << "the bit was on already";
  indexes[7] = 7;
}

}  // namespace
}  // namespace vn::test
