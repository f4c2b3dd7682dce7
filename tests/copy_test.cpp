// Duplicated records, copied pixels, copies and copies of rectangles.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/bitmaps.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

constexpr uint32_t kAll = DUP_ALLOCATE | DUP_PALETTE | DUP_REGION;

TEST(DupBitmap, SharesOrDuplicatesByMode) {
  Bitmap source(20, 10, 8);
  SelectEllipse(source, {3, 3, 15, 9});
  for (uint32_t mode = 0; mode <= kAll; ++mode) {
    SCOPED_TRACE(mode);
    Bitmap copy;
    ASSERT_EQ(Vn_DupBitmapNewDim(copy, source, 20, 10, 8, mode), OK);
    EXPECT_EQ((copy->Flags & FLAG_ALLOCATED) != 0, (mode & DUP_ALLOCATE) != 0);
    EXPECT_EQ(copy->PaintPalette != source->PaintPalette, (mode & DUP_PALETTE) != 0);
    EXPECT_EQ(copy->Region != source->Region, (mode & DUP_REGION) != 0);
    if (!(mode & DUP_PALETTE)) copy->Palette = copy->PaintPalette = nullptr;
    if (!(mode & DUP_REGION)) copy->Region = nullptr;
  }
}

TEST(DupBitmap, CarriesAllButPixelsToOtherDimensions) {
  constexpr uint32_t kMarks = FLAG_CARRIED_0080 | FLAG_GRAY_PALETTE | FLAG_OPTIMIZED_PALETTE |
                              FLAG_FIXED_PALETTE | FLAG_CUSTOM_PALETTE | FLAG_CARRIED_1000 |
                              FLAG_PALETTE_INDEXES;
  Bitmap source(20, 10, 8, VIEW_TOP_FIRST);
  source->Flags |= kMarks;
  source->CarriedTag = 1;
  for (uint32_t i = 0; i < 4; ++i)
    source->CarriedPair[i % 2] = source->CarriedQuad[i] = i + 2;
  source->XResolution = 72;
  source->YResolution = -9;
  source->DitherMethod = 3;
  Vn_AccessBitmap(source);

  BitmapHandle copy, expected;
  ASSERT_EQ(Vn_InitBitmap(&expected, 9, 4, 24), OK);
  expected.Flags = kMarks;
  expected.CarriedTag = 1;
  std::memcpy(expected.CarriedPair, source->CarriedPair, sizeof expected.CarriedPair);
  std::memcpy(expected.CarriedQuad, source->CarriedQuad, sizeof expected.CarriedQuad);
  expected.DibHeader = source->DibHeader;
  std::memcpy(expected.DibColors, source->DibColors, sizeof expected.DibColors);
  expected.Palette = source->Palette;
  expected.PaintPalette = source->PaintPalette;
  expected.ViewOrigin = VIEW_TOP_FIRST;
  expected.XResolution = 72;
  expected.YResolution = -9;
  std::memset(&copy, 0xEE, sizeof copy);
  ASSERT_EQ(Vn_DupBitmapNewDim(&copy, source, 9, 4, 24, 0), OK);
  EXPECT_EQ(std::memcmp(&copy, &expected, sizeof copy), 0);
  Vn_ReleaseBitmap(source);
}

TEST(CopyBitmap, CopiesAreIndependent) {
  WithEachStorage([](const StorageKind& kind) {
    Random random(42);
    for (const int32_t bits : kDepths) {
      BitmapHandle copy;
      std::memset(&copy, 0xEE, sizeof copy);
      Bytes pixels;
      {
        RandomBitmap source(random, 35, 9, bits, kind.request);
        SelectEllipse(source, {1, 1, 30, 8});
        pixels = ReadAll(source);
        ASSERT_EQ(Vn_CopyBitmap(&copy, source), OK);
        ASSERT_EQ(Vn_ClearBitmap(source), OK);
        Vn_FreeBitmapRgn(source);
      }
      EXPECT_EQ(ReadAll(&copy), pixels);
      EXPECT_TRUE(Vn_IsPtInBitmapRgn(&copy, 4, 15));
      EXPECT_FALSE(Vn_IsPtInBitmapRgn(&copy, 0, 0));
      EXPECT_TRUE(bits > 8 || Vn_GetPaletteSize(copy.PaintPalette) != 0);
      EXPECT_FALSE(copy.Flags & FLAG_LOCKED);
      Vn_FreeBitmap(&copy);
    }
  });
}

TEST(CopyBitmapData, CopiesWhatBothBitmapsHave) {
  Random random(43);
  RandomBitmap small(random, 9, 3, 24), large(random, 20, 6, 24);
  std::vector<Bytes> expected = ReadRows(large);
  for (size_t row = 0; row < 3; ++row)
    std::ranges::copy(ReadRow(small, row), expected[row].begin());
  ASSERT_EQ(Vn_CopyBitmapData(large, small), OK);
  EXPECT_EQ(ReadRows(large), expected);
  ASSERT_EQ(Vn_CopyBitmapData(small, large), OK);
}

TEST(CopyBitmapRect, EqualsPixelReads) {
  WithEachStorage([](const StorageKind& kind) {
    Random random(44);
    for (int32_t i = 0; i < 90; ++i) {
      const int32_t bits = kDepths[i % 6];
      const int32_t across = random.Between(1, 50), down = random.Between(1, 20);
      RandomBitmap source(random, across, down, bits, kind.request);
      source->ColorOrder = ORDER_BGR;  // as copies have it
      if (i & 1) SelectEllipse(source, {2, 1, random.Between(3, 50), random.Between(2, 20)});
      const int32_t left = random.Between(0, across - 1), top = random.Between(0, down - 1);
      const int32_t width = random.Between(1, across - left);
      const int32_t height = random.Between(1, down - top);
      SCOPED_TRACE(Told(bits, "bits,", left, ",", top, ",", width, "by", height));
      Bitmap copy;
      ASSERT_EQ(Vn_CopyBitmapRect(copy, source, left, top, width, height), OK);
      ASSERT_TRUE(copy->Width == width && copy->Height == height);
      ASSERT_EQ(Vn_BitmapHasRgn(copy), i & 1);
      const Pixels from = StoredPixels(source), to = StoredPixels(copy);
      for (int32_t row = 0; row < height; ++row) {
        for (int32_t x = 0; x < width; ++x) {
          ASSERT_EQ(to[row][x], from[top + row][left + x]);
          ASSERT_EQ(Vn_GetPixelColor(copy, row, x), Vn_GetPixelColor(source, top + row, left + x));
          ASSERT_EQ(Vn_IsPtInBitmapRgn(copy, row, x),
                    Vn_IsPtInBitmapRgn(source, top + row, left + x));
        }
      }
    }
  });
}

}  // namespace
}  // namespace vn::test
