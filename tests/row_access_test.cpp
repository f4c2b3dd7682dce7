// Row calls: the position cache, columns, and the codes of a failing file.
#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

TEST(RowAccess, TheCacheIsAlwaysStrideTimesRow) {
  BitmapHandle record;
  Vn_InitBitmap(&record, 1000, 1, 24);
  Random random(5);
  uint8_t pixel = 0;
  uint32_t row = 0;
  for (int step = 0; step < 3000; ++step) {
    switch (random.Between(0, 4)) {
      case 0:
        ++row;
        break;
      case 1:
        --row;
        break;
      case 2:
        break;
      default:
        row = static_cast<uint32_t>(random.Next());
    }
    // A record without storage: the cache moves before the call fails.
    EXPECT_EQ(Vn_GetBitmapRow(&record, &pixel, row, 0), ERR_NO_MEMORY);
    EXPECT_EQ(record.CurrentRow, row);
    EXPECT_EQ(record.CurrentOffset, row * record.BytesPerLine);
  }
}

TEST(RowAccess, AStepAddsAndAJumpMultiplies) {
  BitmapHandle record;
  Vn_InitBitmap(&record, 10, 100, 8);
  uint8_t byte;
  // An offset off its true value shows by which road the next one was found.
  const auto offsetAfter = [&](uint32_t from, uint32_t to) {
    record.CurrentRow = from;
    record.CurrentOffset = 1;
    Vn_PutBitmapRow(&record, &byte, to, 1);
    return record.CurrentOffset;
  };
  EXPECT_EQ(offsetAfter(5, 6), 1u + 12);
  EXPECT_EQ(offsetAfter(6, 5), 1u - 12);
  EXPECT_EQ(offsetAfter(0, 0), 1u);
  EXPECT_EQ(offsetAfter(7, 5), 60u);
  EXPECT_EQ(offsetAfter(0, 99), 1188u);
}

TEST(RowAccess, ColumnsFindTheirByte) {
  const struct {
    int32_t bits;
    uint32_t column, byte;
  } cases[] = {{1, 13, 1}, {4, 13, 6}, {8, 13, 13}, {16, 13, 26}, {24, 13, 39}, {32, 13, 52}};
  for (const auto& item : cases) {
    Bitmap bitmap(64, 3, item.bits);
    Bytes row(bitmap->BytesPerLine);
    for (size_t i = 0; i < row.size(); ++i)
      row[i] = static_cast<uint8_t>(i + 1);
    WriteRow(bitmap, 1, Bytes(row.size()));
    WriteRow(bitmap, 2, row);
    const int32_t state = Vn_LockBitmap(bitmap);
    uint8_t bytes[2] = {};
    EXPECT_EQ(Vn_GetBitmapRowCol(bitmap, bytes, 2, item.column, 1), 1);
    EXPECT_EQ(bytes[0], item.byte + 1) << item.bits;
    EXPECT_EQ(bytes[1], 0);
    const uint8_t mark = 255;
    EXPECT_EQ(Vn_PutBitmapRowCol(bitmap, &mark, 2, item.column, 1), 1);
    EXPECT_EQ(bitmap->CurrentOffset, 2 * bitmap->BytesPerLine);  // the row's start, not the column
    Vn_UnlockBitmap(bitmap, state);
    row[item.byte] = 255;
    EXPECT_EQ(ReadRow(bitmap, 2), row);
    EXPECT_EQ(ReadRow(bitmap, 1), Bytes(bitmap->BytesPerLine));
  }
}

HEADLESS_TEST(RowAccess, FileErrorsHaveTheirCodes) {
  const Win32sScope win32s;
  BitmapHandle bitmap;
  Vn_InitBitmap(&bitmap, 10, 10, 8);
  ASSERT_EQ(Vn_AllocateBitmap(&bitmap, STORAGE_DISK), OK);
  uint8_t bytes[64] = {};
  const auto failing = [&](uint32_t n, auto call) {
    Headless_FailNth(HEADLESS_FILE, n);
    const int32_t result = call();
    Headless_FailNth(HEADLESS_FILE, 0);
    return result;
  };
  const auto read = [&] { return Vn_GetBitmapRow(&bitmap, bytes, 4, 12); };
  const auto write = [&] { return Vn_PutBitmapRowCol(&bitmap, bytes, 6, 2, 10); };
  EXPECT_EQ(failing(1, read), ERR_FILE_SEEK);
  EXPECT_EQ(bitmap.CurrentRow, 4u);  // a failed call moves the cache all the same
  EXPECT_EQ(failing(2, read), ERR_FILE_READ);
  EXPECT_EQ(failing(1, write), ERR_FILE_SEEK);
  EXPECT_EQ(failing(2, write), ERR_FILE_WRITE);
  EXPECT_EQ(bitmap.CurrentRow, 6u);
  EXPECT_EQ(bitmap.CurrentOffset, 72u);
  // The file has one byte behind the last row; less than asked is no failure, and none at all too.
  EXPECT_EQ(Vn_GetBitmapRow(&bitmap, bytes, 9, 64), 13);
  EXPECT_EQ(Vn_GetBitmapRow(&bitmap, bytes, 50, 12), 0);
  Vn_FreeBitmap(&bitmap);
}

}  // namespace
}  // namespace vn::test
