// Records, defaults, the progress scheme, and the attachment of process and threads.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "kernel/process.h"
#include "kernel/progress.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

bool IsAllZero(const void* record, size_t bytes) {
  const auto* at = static_cast<const uint8_t*>(record);
  return std::all_of(at, at + bytes, [](uint8_t byte) { return byte == 0; });
}

TEST(Frame, InitWritesTheWholeRecord) {
  BitmapHandle bitmap, expected;
  std::memset(&bitmap, 0xCC, sizeof bitmap);
  EXPECT_EQ(Vn_InitBitmap(&bitmap, 10, 10, 2), ERR_BITS_PER_PIXEL);
  EXPECT_TRUE(IsAllZero(&bitmap, sizeof bitmap));
  const uint32_t strides[] = {8, 20, 36, 68, 100, 132}, colorCounts[] = {2, 16, 256, 0, 0, 0};
  for (size_t i = 0; i < 6; ++i) {
    const int32_t bits = kDepths[i];
    const auto depth = static_cast<WORD>(bits);
    const DWORD size = 7 * strides[i], colors = colorCounts[i];
    std::memset(&bitmap, 0xCC, sizeof bitmap);
    std::memset(&expected, 0, sizeof expected);
    expected.Width = 33;
    expected.Height = 7;
    expected.BitsPerPixel = bits;
    expected.BytesPerLine = strides[i];
    expected.DataSize = size;
    expected.ColorCount = static_cast<int32_t>(colors);
    expected.ColorOrder = bits > 8;
    expected.ViewOrigin = 2;
    expected.DitherMethod = 7;
    expected.XResolution = expected.YResolution = 150;
    expected.DibHeader = {40, 33, 7, 1, depth, 0, size, 0, 0, colors, 0};
    EXPECT_EQ(Vn_InitBitmap(&bitmap, 33, 7, bits), OK);
    EXPECT_EQ(std::memcmp(&bitmap, &expected, sizeof bitmap), 0) << bits;
  }
  // Sizes beyond 32 bits wrap.
  EXPECT_EQ(Vn_InitBitmap(&bitmap, 0x10000, 0x10001, 8), OK);
  EXPECT_EQ(bitmap.DataSize, 0x10000u);
  EXPECT_EQ(Vn_InitBitmap(&bitmap, 0x10000002, 1, 32), OK);  // 32 times the width wraps too
  EXPECT_EQ(bitmap.BytesPerLine, 8u);
}

TEST(Frame, Version) {
  VersionRecord info;
  std::memset(&info, 0xCC, sizeof info);
  EXPECT_EQ(Vn_VersionInfo(&info), OK);
  const std::string description = "VORNKIT\xAE DLL for Win32";
  EXPECT_EQ(std::string(info.Description), description);
  EXPECT_TRUE(IsAllZero(info.Description + description.size(), 60 - description.size()));
  EXPECT_STREQ(info.BuildTime, "16:40:36");
}

VnStatus VN_CALL GoOn(int32_t) { return OK; }

TEST(Frame, SettingsBelongToTheirThread) {
  EXPECT_EQ(Vn_SetDefaultXResolution(0), 150);
  EXPECT_EQ(Vn_SetDefaultYResolution(-5), 150);
  EXPECT_EQ(Vn_GetDefaultYResolution(), -5);
  EXPECT_EQ(Vn_DefaultDithering(9), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_DefaultDithering(8), OK);
  EXPECT_EQ(Vn_SetStatusCallBack(GoOn), nullptr);

  std::thread([] {
    EXPECT_EQ(Vn_GetStatusCallBack(), nullptr);
    BitmapHandle bitmap;
    EXPECT_EQ(Vn_InitBitmap(&bitmap, 1, 1, 1), OK);
    EXPECT_EQ(bitmap.DitherMethod, 7u);
    Vn_SetDefaultXResolution(96);
  }).join();

  BitmapHandle bitmap;
  EXPECT_EQ(Vn_InitBitmap(&bitmap, 1, 1, 1), OK);
  EXPECT_EQ(bitmap.DitherMethod, 8u);
  EXPECT_EQ(bitmap.XResolution, 150);  // 0 and less mean 150 in a new bitmap
  EXPECT_EQ(bitmap.YResolution, 150);
  EXPECT_EQ(Vn_SetDefaultXResolution(150), 0);
  EXPECT_EQ(Vn_SetDefaultYResolution(150), -5);
  EXPECT_EQ(Vn_DefaultDithering(7), OK);
  EXPECT_EQ(Vn_SetStatusCallBack(nullptr), &GoOn);
}

// Runs `units` units and returns what the operation would.
VnStatus Work(uint32_t units) {
  Progress progress(units);
  if (!progress.Begin()) return progress.Result();
  for (uint32_t i = 0; i < units; ++i) {
    if (!progress.Step()) return progress.Result();
  }
  return OK;
}

TEST(Frame, ProgressTellsThePercentages) {
  const auto heard = [](uint32_t units) {
    const StatusLog log;
    EXPECT_EQ(Work(units), OK);
    return log.percents();
  };
  for (const uint32_t units : {1u, 3u, 99u, 100u, 101u, 199u, 200u, 12345u}) {
    EXPECT_EQ(heard(units), ExpectedPercents(units)) << units;
  }
  for (const size_t call : {1, 2, 5}) {
    const StatusLog log(call, 0);  // 0 is neither OK nor an error code
    EXPECT_EQ(Work(10), 0);
    EXPECT_EQ(log.percents().size(), call);
  }
}

#ifndef _WIN32
// Static objects of a program may use the library before main and after it.
struct StaticUser {
  StaticUser() {
    Headless_GetCounts(&before);
    status = Vn_InitBitmap(&bitmap, 300, 300, 24);
    if (status == OK) status = Vn_AllocateBitmap(&bitmap, STORAGE_AUTO);
  }
  ~StaticUser() { Vn_FreeBitmap(&bitmap); }
  BitmapHandle bitmap;
  VnStatus status;
  Headless_Counts before;
} staticUser;

TEST(Frame, StaticObjectsFindTheLibraryAttached) {
  EXPECT_EQ(staticUser.before.globalBlocks, 1u);  // the main thread's settings
  EXPECT_EQ(staticUser.status, OK);
}
#endif

// A thread without a block, and without a slot to put one in, works with the initial values.
TEST(Frame, WithoutAnAttachmentTheDefaultsHold) {
  ASSERT_EQ(OnLoaderCall(nullptr, DLL_PROCESS_DETACH), 1);
  EXPECT_EQ(Vn_SetDefaultXResolution(75), 150);
  EXPECT_EQ(Vn_GetDefaultXResolution(), 75);
  ASSERT_EQ(OnLoaderCall(nullptr, DLL_PROCESS_ATTACH), 1);
  EXPECT_EQ(Vn_GetDefaultXResolution(), 150);
}

#ifndef _WIN32
// Were the thread attached while the process is detached, it would wait for itself.
TEST(Frame, AThreadThatNeverLookedInEndsTheProcess) {
  EXPECT_EXIT(
      {
        alarm(10);
        std::thread([] { std::exit(5); }).join();
      },
      testing::ExitedWithCode(5), "");
}
#endif

// The settings of an earlier attachment outlive a later one that fails.
HEADLESS_TEST(Frame, AFailedAttachmentChangesNothing) {
  Vn_SetDefaultXResolution(96);
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(OnLoaderCall(nullptr, DLL_PROCESS_ATTACH), 0);
  Headless_FailNth(HEADLESS_MEMORY, 0);
  EXPECT_EQ(Vn_SetDefaultXResolution(150), 96);
}

}  // namespace
}  // namespace vn::test
