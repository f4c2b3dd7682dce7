// Colour resolution: slots of the result's palette, pixels without an entry, refusals. The rest is in
// the numbered cases.
#include <cstring>

#include "color/optimize_palette.h"
#include "color/system_colors.h"
#include "tests/support/headless_control.h"
#include "tests/support/slow_color.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

TEST(ColorRes, OptimizedColorsWithFixedAndReservedSlots) {
  Random random(26);
  RandomBitmap source(random, 64, 64, 24);
  // Free, fixed, and fixed without being matched to.
  Colors slots(256, RGBQUAD{0, 0, 0, 2});
  slots[0] = {10, 20, 30, 0};
  slots[5] = {40, 50, 60, 1};
  Bitmap result;
  ASSERT_EQ(
      Vn_ColorResBitmap(source, result, 8, RES_OPTIMIZED_PALETTE, slots.data(), 100, nullptr, 0),
      OK);
  const Colors colors = PaletteOf(result);
  EXPECT_EQ(colors[0].rgbRed, 30);
  EXPECT_EQ(colors[5].rgbGreen, 50);
  Colors built(98);
  ASSERT_EQ(OptimizePalette(source, built.data(), 98, nullptr), OK);
  for (size_t i = 1, next = 0; i < 100; ++i) {
    if (i == 5) continue;
    EXPECT_EQ(std::memcmp(&colors[i], &built[next++], 3), 0) << i;
  }
  EXPECT_EQ(std::memcmp(&colors[100], "\2\2\2", 3), 0);
  for (const uint8_t index : ReadAll(result))
    EXPECT_TRUE(index != 5 && index < 100);
}

TEST(ColorRes, PixelsWithoutAPaletteEntryCountAsFiller) {
  const Colors colors = {{90, 90, 90, 0}, {1, 1, 1, 0}, {200, 0, 0, 0}};
  Bitmap source(8, 1, 4);
  ASSERT_EQ(Vn_ColorResBitmap(source, source, 4, RES_USER_PALETTE, colors.data(), 3, nullptr, 0),
            OK);
  WriteRow(source, 0, {0x01, 0x2F, 0xFF, 0xFF});
  Bitmap result;
  ASSERT_EQ(Vn_ColorResBitmap(source, result, 8, 0, nullptr, 0, nullptr, 0), OK);
  // The missing entries are black and come first; (1, 1, 1) is nearest to the filler (2, 2, 2).
  EXPECT_EQ(ReadRow(result, 0), (Bytes{15, 14, 13, 14, 14, 14, 14, 14}));
}

struct Stop {
  int32_t rows = 0, stopAt = 0;
  static VnStatus VN_CALL Hear(BitmapHandle* target, uint8_t*, uint32_t rows, UINT_PTR data) {
    auto* stop = reinterpret_cast<Stop*>(data);
    EXPECT_EQ(rows, 1u);
    EXPECT_FALSE(target->Flags & FLAG_PALETTE_INDEXES);
    return ++stop->rows == stop->stopAt ? -99 : 0 + OK;
  }
};

TEST(ColorRes, RowsTooLongFor32BitsAreRefused) {
  // 8 bits: a stride that wraps to 0; 24 bits: to less than the row needs.
  for (const auto& [width, bits] : {std::pair{0x20000000u, 8u}, {0x10000000u, 24u}}) {
    Bitmap source(width, 1, 1);
    Stop rows;
    EXPECT_EQ(Vn_ColorResBitmap(source, nullptr, bits, bits == 8, nullptr, 0, Stop::Hear,
                                reinterpret_cast<UINT_PTR>(&rows)),
              ERR_NO_MEMORY);
    EXPECT_EQ(Vn_ColorResBitmap(source, source, bits, bits == 8, nullptr, 0, nullptr, 0),
              ERR_NO_MEMORY);
    EXPECT_EQ(source->BitsPerPixel, 1);
  }
}

// Noise, or a slope with little of it, which gathers small errors.
void FillForDiffusion(BitmapHandle* bitmap, Random& random) {
  const int32_t noise = random.Chance(3) ? 255 : 4, level = random.Between(0, 255);
  Bytes bytes(bitmap->BytesPerLine);
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    for (size_t i = 0; i < bytes.size(); ++i) {
      const auto slope = static_cast<int32_t>(i / 8) + row;
      bytes[i] = static_cast<uint8_t>((level + slope) % 256 * (256 - noise) / 256 +
                                      random.Between(0, noise));
    }
    WriteRow(bitmap, row, bytes);
  }
}

TEST(ColorRes, LinesDiffusedInGroupsEqualSingleOnes) {
  constexpr uint32_t kTargets[] = {1, 4, 8};
  Random random(29);
  WithEachStorage([&](const StorageKind& kind) {
    for (int i = 0; i < 150; ++i) {
      const uint32_t bits = random.OneOf(kTargets), method = 1 + static_cast<uint32_t>(i % 6);
      RandomBitmap source(random, random.Between(30, 170), random.Between(5, 70),
                          random.OneOf(kDepths), kind.request);
      FillForDiffusion(source, random);
      // What lies behind a stop is as the storage came: only sections come zeroed.
      const bool stops = random.Chance(3) && !kind.win32s;
      const size_t stopAt = stops ? static_cast<size_t>(random.Between(1, 40)) : 0;
      std::vector<Bytes> seen;
      WithEachVectorForm([&] {
        Bitmap result;
        const StatusLog log(stopAt);
        const VnStatus status =
            Vn_ColorResBitmap(source, result, bits, RES_FIXED_PALETTE | RES_DITHER_METHOD(method),
                              nullptr, 0, nullptr, 0);
        seen.push_back(ReadAll(result));
        seen.back().push_back(static_cast<uint8_t>(status));
        seen.back().push_back(static_cast<uint8_t>(log.percents().size()));
      });
      ASSERT_EQ(seen[0], seen[1]) << source->Width << " by " << source->Height << ", "
                                  << source->BitsPerPixel << " to " << bits << " bits, method "
                                  << method << ", stop at " << stopAt;
    }
  });
}

HEADLESS_TEST(ColorRes, ReservesSystemColorsOnPaletteDisplays) {
  Colors colors(64, RGBQUAD{9, 9, 9, 9});
  EXPECT_EQ(ReserveSystemColors(colors.data(), 64), 0u);
  const DisplayScope display(8);
  ASSERT_EQ(ReserveSystemColors(colors.data(), 64), 20u);
  EXPECT_EQ(colors[10].rgbReserved, 9);
  EXPECT_EQ(colors[53].rgbReserved, 9);
  EXPECT_EQ(std::memcmp(&colors[0], "\0\0\0", 4), 0);
  EXPECT_EQ(std::memcmp(&colors[63], "\xFF\xFF\xFF", 4), 0);

  // The free slots of a result lie between them, so that the rows are dithered, and nearest colours
  // may be reserved ones.
  Random random(28);
  const Colors own = RandomColors(random, 16);
  Bitmap source(40, 3, 4, VIEW_BOTTOM_FIRST, ORDER_BGR, own.data()), result;
  FillRandom(source, random);
  ASSERT_EQ(Vn_ColorResBitmap(source, result, 8, RES_SYSTEM_COLORS, nullptr, 64, nullptr, 0), OK);
  const Colors made = PaletteOf(result);
  Colors built(44);
  ASSERT_EQ(OptimizePalette(source, built.data(), 44, nullptr), OK);
  EXPECT_EQ(std::memcmp(made.data(), colors.data(), 40), 0);
  EXPECT_EQ(std::memcmp(&made[10], built.data(), 44 * sizeof(RGBQUAD)), 0);
  EXPECT_EQ(std::memcmp(&made[54], &colors[54], 40), 0);
  const Bytes from = ReadRow(source, 1), to = ReadRow(result, 1);
  for (size_t x = 0; x < 40; ++x)
    EXPECT_EQ(made[to[x]].rgbGreen / 8, own[PixelBits(from, x, 4)].rgbGreen / 8);
}

}  // namespace
}  // namespace vn::test
