// The world that the tests run in is the one that the run asked for: without this a screen that
// could not be had would pass unseen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "kernel/vncore.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

#ifdef _WIN32

std::string Asked(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

TEST(World, HasTheScreenAskedFor) {
  HDC screen = GetDC(nullptr);
  if (Asked("VNCORE_WINE_DEPTH") == "8") {
    EXPECT_EQ(GetDeviceCaps(screen, BITSPIXEL), 8);
    EXPECT_NE(GetDeviceCaps(screen, RASTERCAPS) & RC_PALETTE, 0);
    EXPECT_EQ(GetDeviceCaps(screen, SIZEPALETTE), 256);
    EXPECT_EQ(GetDeviceCaps(screen, NUMRESERVED), 20);
  } else {
    EXPECT_EQ(GetDeviceCaps(screen, BITSPIXEL), 32);
    EXPECT_EQ(GetDeviceCaps(screen, RASTERCAPS) & RC_PALETTE, 0);
  }
  ReleaseDC(nullptr, screen);
}

bool OnWin32s() { return GetVersion() >> 31 && (GetVersion() & 0xFF) == 3; }

TEST(World, HasTheVersionAskedFor) {
  EXPECT_EQ(OnWin32s(), Asked("VNCORE_WINE_VERSION") == "win31");
}

#else

bool OnWin32s() { return false; }

#endif

HEADLESS_TEST(World, ClaimsToBeWin32sWhenTold) {
  Win32sScope scope;
  EXPECT_TRUE(GetVersion() >> 31);
  EXPECT_EQ(GetVersion() & 0xFF, 3u);
}

// Which of the three kinds of storage a request gets.
void ExpectStorage(bool win32s) {
  for (const int32_t request : {STORAGE_AUTO, STORAGE_DISK, STORAGE_MEMORY}) {
    const bool disk = win32s && request == STORAGE_DISK;
    Bitmap bitmap(40, 30, 8, VIEW_TOP_FIRST, ORDER_BGR, nullptr, request);
    EXPECT_EQ((bitmap->Flags & FLAG_ON_DISK) != 0, disk);
    EXPECT_EQ((bitmap->Flags & FLAG_IN_MEMORY) != 0, !disk);
    if (disk) {
      // The name hangs on Bits, and the file has its full size and one byte more.
      HANDLE file = Vn_OsOpen(reinterpret_cast<const char*>(bitmap->Bits), 0, 0x180);
      ASSERT_NE(file, INVALID_HANDLE_VALUE);
      EXPECT_EQ(Vn_OsSeek(file, 0, 2), 40u * 30 + 1);
      Vn_OsClose(file);
    } else {
      EXPECT_EQ(bitmap->Bits == nullptr, win32s) << "global memory has no address until locked";
    }
    const int32_t state = Vn_LockBitmap(bitmap);
    EXPECT_EQ(bitmap->Bits != nullptr, true);
    EXPECT_EQ((bitmap->Flags & FLAG_LOCKED) != 0, !disk);
    Vn_UnlockBitmap(bitmap, state);
  }
}

TEST(World, GivesTheStorageOfItsKind) { ExpectStorage(OnWin32s()); }

HEADLESS_TEST(World, GivesTheStorageOfWin32s) {
  Win32sScope scope;
  ExpectStorage(true);
}

}  // namespace
}  // namespace vn::test
