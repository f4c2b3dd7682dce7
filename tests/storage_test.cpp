// The three kinds of storage: equal bytes, lives, locks, heights, and what failures leave.
#include "tests/support/storage_kinds.h"

#include <gtest/gtest.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

#include <filesystem>

#include "kernel/guards.h"
#include "tests/support/bitmaps.h"
#ifndef _WIN32
#include "tests/support/temporary_folder.h"
#endif

namespace vn::test {
namespace {

TEST(Storage, RefusesEmptyBitmapsBeforeBadRequests) {
  BitmapHandle bitmap;
  Vn_InitBitmap(&bitmap, 0, 5, 8);
  EXPECT_EQ(Vn_AllocateBitmap(&bitmap, 2), ERR_EMPTY_BITMAP);
  Vn_InitBitmap(&bitmap, 5, 5, 8);
  EXPECT_EQ(Vn_AllocateBitmap(&bitmap, 2), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_ChangeBitmapHeight(&bitmap, 3), ERR_NO_BITMAP);
}

TEST(Storage, LocksNestByTheirState) {
  Bitmap bitmap(10, 10, 24);
  const int32_t memory = bitmap->Flags & FLAG_IN_MEMORY ? 1 : 0;
  EXPECT_EQ(Vn_LockBitmap(bitmap), 0);
  EXPECT_EQ(Vn_LockBitmap(bitmap), memory);
  Vn_UnlockBitmap(bitmap, memory);
  EXPECT_EQ(Vn_ChangeBitmapHeight(bitmap, 10), memory ? 0 + ERR_INVALID_PARAMETER : 0 + OK);
  Vn_UnlockBitmap(bitmap, 0);
  Vn_AccessBitmap(bitmap);
  EXPECT_EQ(Vn_LockBitmap(bitmap), memory);
  Vn_ReleaseBitmap(bitmap);
  EXPECT_FALSE(bitmap->Flags & FLAG_LOCKED);
}

TEST(Storage, FreeImageHandsPalettesOn) {
  Bitmap bitmap(10, 10, 8);
  BitmapHandle forgotten;
  Vn_CopyBitmapHandle(&forgotten, bitmap);
  forgotten.Flags = 0;
  EXPECT_EQ(Vn_FreeImage(&forgotten, 1), OK);  // no storage: nothing happens
  EXPECT_EQ(forgotten.PaintPalette, bitmap->PaintPalette);
  const HPALETTE palette = bitmap->PaintPalette ? bitmap->PaintPalette : bitmap->Palette;
  ASSERT_NE(palette, nullptr);
  EXPECT_EQ(Vn_FreeImage(bitmap, 0), OK);
  EXPECT_EQ(bitmap->PaintPalette, nullptr);
  EXPECT_EQ(bitmap->Palette, nullptr);
  EXPECT_EQ(Vn_GetPaletteSize(palette), 256);
  EXPECT_TRUE(DeleteObject(palette));
}

TEST(Storage, NothingOfARegionIsLeftInTheRecord) {
  for (const int32_t way : {0, 1, 2}) {
    BitmapHandle bitmap;
    Vn_InitBitmap(&bitmap, 4, 4, 8);
    EXPECT_TRUE(way == 0 || Vn_AllocateBitmap(&bitmap, STORAGE_AUTO) == OK);
    Select(&bitmap, {1, 1, 3, 3});
    if (way == 2) Vn_FreeImage(&bitmap, 1);
    if (way != 2) Vn_FreeBitmap(&bitmap);  // also of a record without storage
    EXPECT_EQ(bitmap.Region, nullptr);
    Vn_FreeBitmap(&bitmap);
  }
}

#ifdef __SANITIZE_ADDRESS__
// A section ends at its last byte: that is what makes the tests see a step beyond it.
TEST(Storage, SanitizersSeeTheByteBehindThePixels) {
  for (const uint32_t width : {1u, 100u, 4096u}) {
    Bitmap bitmap(width, 3, 8);
    EXPECT_EQ(__asan_region_is_poisoned(bitmap->Bits, bitmap->DataSize), nullptr);
    EXPECT_TRUE(__asan_address_is_poisoned(bitmap->Bits + bitmap->DataSize));
  }
}
#endif

#ifndef _WIN32  // what follows steers the headless platform

// Random writes of rows and parts of rows against plain bytes.
TEST(Storage, AllKindsHoldTheSameBytes) {
  const TemporaryFolder folder;
  const TempDirScope scope(folder.Path());
  WithEachStorage([&](const StorageKind& kind) {
    for (const int32_t bits : kDepths) {
      Random random(bits);
      Bitmap bitmap(61, 23, bits, VIEW_TOP_FIRST, ORDER_BGR, nullptr, kind.request);
      EXPECT_EQ(bitmap->Flags & (FLAG_ALLOCATED | FLAG_IN_MEMORY | FLAG_ON_DISK), kind.flags);
      const uint32_t stride = bitmap->BytesPerLine;
      FillRandom(bitmap, random);
      std::vector<Bytes> model = ReadRows(bitmap);
      const BitmapLock lock(bitmap);
      for (int step = 0; step < 200; ++step) {
        const int32_t row = random.Between(0, 22), column = random.Between(0, 60);
        const auto first = static_cast<uint32_t>(column * bits / 8);
        const int32_t count = random.Between(0, stride - first);
        uint8_t* const part = model[row].data() + first;
        Bytes bytes(static_cast<size_t>(count) + 1);
        if (random.Chance(2)) {
          random.Fill(bytes.data(), bytes.size());
          EXPECT_EQ(Vn_PutBitmapRowCol(bitmap, bytes.data(), row, column, count), count);
          std::copy_n(bytes.begin(), count, part);
        } else {
          EXPECT_EQ(Vn_GetBitmapRowCol(bitmap, bytes.data(), row, column, count), count);
          EXPECT_TRUE(std::equal(part, part + count, bytes.begin()));
        }
        ASSERT_EQ(bitmap->CurrentOffset, row * stride);
      }
      EXPECT_EQ(ReadRows(bitmap), model);
    }
  });
  EXPECT_TRUE(folder.Names().empty());
}

TEST(Storage, Win32sFallsBackToAFile) {
  const TemporaryFolder folder;
  const TempDirScope scope(folder.Path());
  const Win32sScope win32s;
  BitmapHandle bitmap;
  Vn_InitBitmap(&bitmap, 100, 100, 24);
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(Vn_AllocateBitmap(&bitmap, STORAGE_MEMORY), ERR_NO_MEMORY);
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(Vn_AllocateBitmap(&bitmap, STORAGE_AUTO), OK);
  Headless_FailNth(HEADLESS_MEMORY, 0);
  EXPECT_EQ(bitmap.Flags, static_cast<uint32_t>(FLAG_ALLOCATED | FLAG_ON_DISK));
  const std::string name = reinterpret_cast<const char*>(bitmap.Bits);
  EXPECT_EQ(std::filesystem::path(name).filename().string().substr(0, 2), "VN");
  EXPECT_EQ(std::filesystem::file_size(name), bitmap.DataSize + 1);
  Vn_FreeBitmap(&bitmap);
  EXPECT_TRUE(folder.Names().empty());

  // No folder for it, no file.
  const TempDirScope nowhere("/no such folder");
  char found[MAX_PATH] = "old";
  EXPECT_EQ(Vn_OsGetTempName(found), 0);
  EXPECT_STREQ(found, "");
  EXPECT_EQ(Vn_AllocateBitmap(&bitmap, STORAGE_DISK), ERR_NO_MEMORY);
}

#endif

}  // namespace
}  // namespace vn::test
