// The plan of a paint against its tables, and the display mode.
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
  const auto same = [](const Colors& a, const RGBQUAD* b) {
    return !a.empty() && std::memcmp(a.data(), b, a.size() * sizeof(RGBQUAD)) == 0;
  };
  Bitmap deep(4, 4, 24);
  for (const int32_t bits : {1, 4, 8}) {
    const Colors fixed = paletteOf(deep, kDefaultMode, bits);
    EXPECT_EQ(fixed.size(), size_t{1} << bits);
    EXPECT_TRUE(same(fixed, Vn_IntGetFixedPalette(static_cast<uint32_t>(bits))));
  }
  EXPECT_TRUE(paletteOf(deep, kDefaultMode, 24).empty());
  EXPECT_TRUE(paletteOf(deep, 0, 8).empty());
  Random random(71);
  const Colors own = RandomColors(random, 256);
  Bitmap paletted(4, 4, 8, VIEW_TOP_FIRST, ORDER_BGR, own.data());
  EXPECT_TRUE(same(paletteOf(paletted, kDefaultMode, 8), own.data()));
  EXPECT_TRUE(same(paletteOf(paletted, kDefaultMode, 24), own.data()));
  for (const RGBQUAD* table : {kBlackWhite, kWhiteBlack}) {
    Bitmap bitonal(4, 4, 1, VIEW_TOP_FIRST, ORDER_BGR, table);
    const Colors ramp = paletteOf(bitonal, MODE_BITONAL_GRAY, 8);
    ASSERT_EQ(ramp.size(), 256u);
    for (uint32_t i = 0; i < 256; ++i) {
      EXPECT_TRUE(ramp[i].rgbRed == i && ramp[i].rgbGreen == i && ramp[i].rgbBlue == i);
    }
  }
}

#endif

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
  for (const uint32_t mask : {uint32_t{MODE_DEVICE_INDEXES}, 0u}) {
    Vn_SetDisplayMode(MODE_DEVICE_INDEXES, 0);
    indexes[7] = 1000;
    Vn_SetDisplayMode(mask, MODE_DEVICE_INDEXES);
    EXPECT_EQ(indexes[7], 7);
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
