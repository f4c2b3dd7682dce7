// Textures under pictures, against a model that shifts one pixel at a time. The way back to palettes
// takes the library's dithering, which its own tests hold.
#include <gtest/gtest.h>

#include "tests/support/slow_color.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

// The texture's grays as the picture has them, line by line from the top.
std::vector<Bytes> Grays(BitmapHandle* underlay, const Colors& colors, int32_t width,
                         int32_t height, bool stretch) {
  std::vector<Bytes> lines;
  const auto bits = static_cast<uint32_t>(underlay->BitsPerPixel);
  for (int32_t y = 0; y < height; ++y) {
    const int32_t line = stretch ? y * underlay->Height / height : y % underlay->Height;
    // Storage rows are what is scaled.
    const int32_t row = stretch && underlay->ViewOrigin == VIEW_BOTTOM_FIRST
                            ? (height - 1 - y) * underlay->Height / height
                            : RowOfLine(underlay, line);
    const Bytes pixels = ReadRow(underlay, row);
    Bytes grays;
    for (int32_t x = 0; x < width; ++x) {
      const int32_t column = stretch ? x * underlay->Width / width : x % underlay->Width;
      grays.push_back(static_cast<uint8_t>(
          SlowGray(SlowPixel(pixels, column, bits, underlay->ColorOrder, colors.data()))));
    }
    lines.push_back(grays);
  }
  return lines;
}

// Rows of storage as they must be afterwards.
std::vector<Bytes> Model(BitmapHandle* bitmap, const Colors& colors,
                         const std::vector<Bytes>& grays) {
  const auto bits = static_cast<uint32_t>(bitmap->BitsPerPixel);
  const auto width = static_cast<size_t>(bitmap->Width);
  std::vector<Bytes> rows(grays.size());
  BitmapHandle run;
  Vn_InitBitmap(&run, width, 1, 24);
  run.DitherMethod = DITHER_FLOYD_STEINBERG;
  if (bits <= 8) {
    EXPECT_EQ(Vn_StartDithering(&run, colors.data(), 1u << bits), OK);
  }
  for (int32_t line = 0; line < bitmap->Height; ++line) {
    const int32_t row = RowOfLine(bitmap, line);
    const Bytes before = ReadRow(bitmap, row);
    Bytes shaded(width * 3), after = before;
    for (size_t x = 0; x < width; ++x) {
      SlowColor c = SlowPixel(before, x, bits, bitmap->ColorOrder, colors.data());
      const int shift = grays[line][x] - 128;
      for (int* channel : {&c.red, &c.green, &c.blue})
        *channel = std::clamp(*channel + shift, 0, 255);
      SetSlowPixel(shaded, x, 24, ORDER_BGR, c);
      if (bits > 8) SetSlowPixel(after, x, bits, bitmap->ColorOrder, c);
    }
    if (bits <= 8) {
      EXPECT_EQ(Vn_DitherLine(&run, shaded.data(), after.data()), OK);
    }
    Bytes& result = rows[row] = before;
    for (size_t x = 0; x < width; ++x) {
      if (!Vn_IsPtInBitmapRgn(bitmap, row, x)) continue;
      SetPixelBits(&result, x, bitmap->BitsPerPixel, PixelBits(after, x, bitmap->BitsPerPixel));
    }
  }
  Vn_StopDithering(&run);
  return rows;
}

void EqualsTheModel(int32_t storage, int32_t rounds) {
  Random random(61);
  for (int32_t round = 0; round < rounds; ++round) {
    const int32_t bits = kDepths[round % 6], textureBits = random.OneOf(kDepths);
    const int32_t width = random.Between(1, 70), height = random.Between(1, 9);
    const int32_t textureWidth = random.Between(1, 50), textureHeight = random.Between(1, 7);
    const bool stretch = random.Chance(2);
    const Colors colors = RandomColors(random, 256), textureColors = RandomColors(random, 256);
    RandomBitmap bitmap(random, width, height, bits, storage, colors.data());
    RandomBitmap texture(random, textureWidth, textureHeight, textureBits, storage,
                         textureColors.data());
    texture->ColorOrder = ORDER_BGR;  // of a texture, which is copied, it does not count
    // Thin ellipses are not the same on every platform.
    if (random.Chance(3) && width > 9) SelectEllipse(bitmap, {1, 1, width - 2, height});
    if (bits <= 8 && random.Chance(2)) Vn_CreatePaletteColors(bitmap);
    const uint32_t flags = bitmap->Flags;
    SCOPED_TRACE(
        Told("round", round, ",", bits, "bits, texture", textureBits, "bits, stretch", stretch));
    const std::vector<Bytes> expected =
        Model(bitmap, colors, Grays(texture, textureColors, width, height, stretch));
    const Bytes before = ReadAll(texture);
    ASSERT_EQ(Vn_UnderlayBitmap(bitmap, texture, stretch ? UNDERLAY_STRETCH : UNDERLAY_TILE), OK);
    ASSERT_EQ(ReadRows(bitmap), expected);
    EXPECT_EQ(ReadAll(texture), before);
    EXPECT_EQ(bitmap->Flags, flags);
    EXPECT_FALSE(texture->Flags & FLAG_LOCKED);
  }
}

TEST(Underlay, EqualsTheModel) {
  WithEachStorage([](const StorageKind& kind) {
    WithEachVectorForm([&] { EqualsTheModel(kind.request, kind.win32s ? 40 : 300); });
  });
}

TEST(Underlay, OnlyTheTextureTellsProgress) {
  Bitmap bitmap(6, 30, 24), texture(4, 10, 24);
  const auto heard = [&](uint32_t mode, size_t stopAt, VnStatus expected) {
    const StatusLog log(stopAt, -77);
    EXPECT_EQ(Vn_UnderlayBitmap(bitmap, texture, mode), expected);
    return log.percents();
  };
  std::vector<int32_t> percents = ExpectedPercents(10);
  EXPECT_EQ(heard(UNDERLAY_TILE, 0, OK), percents);
  const std::vector<int32_t> sizing = ExpectedPercents(30);
  percents.insert(percents.end(), sizing.begin(), sizing.end());
  EXPECT_EQ(heard(UNDERLAY_STRETCH, 0, OK), percents);
  EXPECT_EQ(heard(UNDERLAY_STRETCH, 15, -77).size(), 15u);
}

TEST(Underlay, RefusesWhatItCannotTake) {
  Bitmap bitmap(5, 5, 8);
  EXPECT_EQ(Vn_UnderlayBitmap(nullptr, bitmap, 9), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_UnderlayBitmap(bitmap, nullptr, 9), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_UnderlayBitmap(bitmap, bitmap, 2), ERR_INVALID_PARAMETER);
  // A run of the bitmap's own is closed.
  ASSERT_EQ(Vn_StartDithering(bitmap, nullptr, 2), OK);
  EXPECT_EQ(Vn_UnderlayBitmap(bitmap, bitmap, UNDERLAY_TILE), OK);
  EXPECT_EQ(bitmap->DitherState, nullptr);
}

}  // namespace
}  // namespace vn::test
