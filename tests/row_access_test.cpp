// Row calls: the position cache, columns, and the codes of a failing file.
#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

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

HEADLESS_TEST(RowAccess, FileErrorsHaveTheirCodes) {
  const Win32sScope win32s;
  Bitmap bitmap(10, 10, 8, VIEW_TOP_FIRST, ORDER_BGR, nullptr, STORAGE_DISK);
  uint8_t bytes[64] = {};
  const auto failing = [&](uint32_t n, auto call) {
    Headless_FailNth(HEADLESS_FILE, n);
    const int32_t result = call();
    Headless_FailNth(HEADLESS_FILE, 0);
    return result;
  };
  const auto read = [&] { return Vn_GetBitmapRow(bitmap, bytes, 4, 12); };
  const auto write = [&] { return Vn_PutBitmapRowCol(bitmap, bytes, 6, 2, 10); };
  EXPECT_EQ(failing(1, read), ERR_FILE_SEEK);
  EXPECT_EQ(bitmap->CurrentRow, 4u);  // a failed call moves the cache all the same
  EXPECT_EQ(failing(2, read), ERR_FILE_READ);
  EXPECT_EQ(failing(1, write), ERR_FILE_SEEK);
  EXPECT_EQ(failing(2, write), ERR_FILE_WRITE);
  EXPECT_EQ(bitmap->CurrentRow, 6u);
  EXPECT_EQ(bitmap->CurrentOffset, 72u);
  // The file has one byte behind the last row; less than asked is no failure, and none at all too.
  EXPECT_EQ(Vn_GetBitmapRow(bitmap, bytes, 9, 64), 13);
  EXPECT_EQ(Vn_GetBitmapRow(bitmap, bytes, 50, 12), 0);
}

}  // namespace
}  // namespace vn::test
