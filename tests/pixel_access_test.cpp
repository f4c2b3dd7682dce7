// Single pixels by colour, at every depth and through every storage.
#include <gtest/gtest.h>

#include "tests/support/slow_color.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

// The colour of a raw pixel, from the words of the record alone.
COLORREF ColorOfBits(BitmapHandle* bitmap, const Bytes& row, size_t x) {
  const SlowColor c =
      SlowPixel(row, x, bitmap->BitsPerPixel, bitmap->ColorOrder, PaletteOf(bitmap).data());
  return RGB(c.red, c.green, c.blue);
}

void ReadsAndWritesAgree(int32_t bits, uint32_t order, int32_t storage) {
  SCOPED_TRACE(Told(bits, "bits, order", order, ", storage", storage));
  Random random(static_cast<uint64_t>(bits) * 16 + order);
  Bitmap bitmap(37, 5, bits, VIEW_BOTTOM_FIRST, order, RandomColors(random, 256).data(), storage);
  FillRandom(bitmap, random);
  for (int32_t i = 0; i < 200; ++i) {
    const int32_t row = random.Between(0, 4), column = random.Between(0, 36);
    Bytes before = ReadRow(bitmap, row);
    const COLORREF color = ColorOfBits(bitmap, before, column);
    ASSERT_EQ(Vn_GetPixelColor(bitmap, row, column), color);
    // A colour that the format holds exactly comes back; nothing beside the pixel moves.
    const int32_t other = random.Between(0, 36);
    const COLORREF next = ColorOfBits(bitmap, before, other);
    ASSERT_EQ(Vn_PutPixelColor(bitmap, row, column, next), OK);
    ASSERT_EQ(Vn_GetPixelColor(bitmap, row, column), next);
    Bytes after = ReadRow(bitmap, row);
    const int32_t written = bits == 32 ? 24 : bits;  // the fourth byte stays
    for (int32_t bit = column * bits; bit < column * bits + written; ++bit) {
      SetPixelBits(&after, bit, 1, 0);
      SetPixelBits(&before, bit, 1, 0);
    }
    ASSERT_EQ(after, before);
  }
}

TEST(PixelAccess, ReadsAndWritesAgreeAtEveryDepth) {
  WithEachStorage([](const StorageKind& kind) {
    for (const int32_t bits : kDepths) {
      for (const uint32_t order : {ORDER_BGR, ORDER_RGB})
        ReadsAndWritesAgree(bits, order, kind.request);
    }
  });
}

// The byte of a packed pixel is found by 16 bits of the column.
TEST(PixelAccess, FarColumnsOfPackedRowsWrap) {
  for (const int32_t bits : {1, 4}) {
    Bitmap bitmap(65536 + 64, 1, bits);
    ASSERT_EQ(Vn_ClearBitmap(bitmap), OK);
    ASSERT_EQ(Vn_PutPixelColor(bitmap, 0, 65536 + 13, 0x1000001), OK);
    const Bytes row = ReadRow(bitmap, 0);
    EXPECT_EQ(PixelBits(row, 13, bits), 1u);
    EXPECT_EQ(PixelBits(row, 65536 + 13, bits), 0u);
    EXPECT_EQ(Vn_GetPixelColor(bitmap, 0, 65536 + 13), Vn_GetPixelColor(bitmap, 0, 13));
  }
}

TEST(PixelAccess, WritesKeepToTheRegionReadsDoNot) {
  Bitmap bitmap(10, 10, 24);
  for (const auto& [row, column] : {std::pair{-1, 0}, {10, 0}, {0, -1}, {0, 10}}) {
    EXPECT_EQ(Vn_GetPixelColor(bitmap, row, column), VN_NO_PIXEL) << row << ", " << column;
  }
  ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(1, 2, 3)), OK);
  Select(bitmap, {2, 3, 5, 6});
  for (int32_t row = 0; row < 10; ++row) {
    for (int32_t column = 0; column < 10; ++column) {
      const bool inside = row >= 3 && row < 6 && column >= 2 && column < 5;
      EXPECT_EQ(Vn_PutPixelColor(bitmap, row, column, RGB(9, 9, 9)),
                inside ? OK : ERR_EMPTY_BITMAP);
      EXPECT_EQ(Vn_GetPixelColor(bitmap, row, column), inside ? RGB(9, 9, 9) : RGB(1, 2, 3));
    }
  }
}

HEADLESS_TEST(PixelAccess, FailingFileLeavesNeighboursAlone) {
  const Win32sScope scope;
  Bitmap bitmap(16, 1, 1, VIEW_TOP_FIRST, ORDER_RGB, nullptr, STORAGE_DISK);
  WriteRow(bitmap, 0, {0xA5, 0x5A, 0, 0});
  for (uint32_t n = 1; n <= 2; ++n) {  // the seek and the read
    Headless_FailNth(HEADLESS_FILE, n);
    EXPECT_EQ(Vn_GetPixelColor(bitmap, 0, 3), VN_NO_PIXEL);
    Headless_FailNth(HEADLESS_FILE, n);
    EXPECT_EQ(Vn_PutPixelColor(bitmap, 0, 3, 0x1000001), OK);
    Headless_FailNth(HEADLESS_FILE, 0);
    EXPECT_EQ(ReadRow(bitmap, 0), (Bytes{0xA5, 0x5A, 0, 0}));
  }
}

}  // namespace
}  // namespace vn::test
