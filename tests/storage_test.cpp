// The three kinds of storage: equal bytes, lives, locks, heights, and what failures leave.
#include "tests/support/storage_kinds.h"

#include <gtest/gtest.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

#include <cstring>
#include <filesystem>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
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
  const RECT rect = {1, 1, 3, 3};
  for (const int32_t way : {0, 1, 2}) {
    BitmapHandle bitmap;
    Vn_InitBitmap(&bitmap, 4, 4, 8);
    if (way) {
      ASSERT_EQ(Vn_AllocateBitmap(&bitmap, STORAGE_AUTO), OK);
    }
    ASSERT_EQ(Vn_SetBitmapRgnRect(&bitmap, nullptr, &rect, REGION_COMBINE_REPLACE), OK);
    if (way == 2) {
      Vn_FreeImage(&bitmap, 1);
    } else {
      Vn_FreeBitmap(&bitmap);  // also of a record without storage
    }
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

BitmapHandle Allocated(const StorageKind& kind, uint32_t width, uint32_t height, int32_t bits) {
  BitmapHandle bitmap;
  EXPECT_EQ(Vn_InitBitmap(&bitmap, width, height, bits), OK);
  EXPECT_EQ(Vn_AllocateBitmap(&bitmap, kind.request), OK);
  EXPECT_EQ(bitmap.Flags, kind.flags);
  return bitmap;
}

// Random writes of rows and parts of rows against plain bytes.
TEST(Storage, AllKindsHoldTheSameBytes) {
  const TemporaryFolder folder;
  const TempDirScope scope(folder.Path());
  WithEachStorage([&](const StorageKind& kind) {
    for (const int32_t bits : kDepths) {
      Random random(static_cast<uint64_t>(bits));
      constexpr int32_t kWidth = 61, kHeight = 23;
      BitmapHandle bitmap = Allocated(kind, kWidth, kHeight, bits);
      const uint32_t stride = bitmap.BytesPerLine;
      Bytes model(bitmap.DataSize);
      const int32_t state = Vn_LockBitmap(&bitmap);
      for (uint32_t row = 0; row < kHeight; ++row) {  // global memory comes with any bytes
        ASSERT_EQ(Vn_PutBitmapRow(&bitmap, &model[row * stride], row, stride),
                  static_cast<int32_t>(stride));
      }
      for (int step = 0; step < 200; ++step) {
        const auto row = static_cast<uint32_t>(random.Between(0, kHeight - 1));
        const auto column = static_cast<uint32_t>(random.Between(0, kWidth - 1));
        const uint32_t first = column * static_cast<uint32_t>(bits) / 8;
        const auto count =
            static_cast<uint32_t>(random.Between(0, static_cast<int32_t>(stride - first)));
        Bytes bytes(count + 1);
        if (random.Chance(2)) {
          random.Fill(bytes.data(), count);
          EXPECT_EQ(Vn_PutBitmapRowCol(&bitmap, bytes.data(), row, column, count),
                    static_cast<int32_t>(count));
          std::memcpy(&model[row * stride] + first, bytes.data(), count);
        } else {
          EXPECT_EQ(Vn_GetBitmapRowCol(&bitmap, bytes.data(), row, column, count),
                    static_cast<int32_t>(count));
          EXPECT_EQ(std::memcmp(&model[row * stride] + first, bytes.data(), count), 0);
        }
        ASSERT_EQ(bitmap.CurrentOffset, row * stride);
      }
      Vn_UnlockBitmap(&bitmap, state);
      EXPECT_EQ(ReadAll(&bitmap), model);
      Vn_FreeBitmap(&bitmap);
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
