// Records, defaults, the progress scheme, and the attachment of process and threads.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

#include "kernel/progress.h"
#include "kernel/thread_settings.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

bool IsAllZero(const void* record, size_t bytes) {
  const auto* at = static_cast<const uint8_t*>(record);
  return std::all_of(at, at + bytes, [](uint8_t byte) { return byte == 0; });
}

TEST(Frame, InitFillsTheRecordOfEachDepth) {
  for (const int32_t bits : kDepths) {
    SCOPED_TRACE(bits);
    BitmapHandle bitmap;
    std::memset(&bitmap, 0xCC, sizeof bitmap);
    ASSERT_EQ(Vn_InitBitmap(&bitmap, 33, 7, bits), OK);
    // The stride by another road: bits counted one by one, rounded up to words.
    uint32_t stride = 0;
    while (stride * 8 < 33u * static_cast<uint32_t>(bits))
      stride += 4;
    EXPECT_EQ(bitmap.BytesPerLine, stride);
    EXPECT_EQ(bitmap.DataSize, 7 * stride);
    EXPECT_EQ(bitmap.ColorCount, bits <= 8 ? 1 << bits : 0);
    EXPECT_EQ(bitmap.ColorOrder, bits <= 8 ? 0u : 1u);
    EXPECT_EQ(bitmap.ViewOrigin, 2u);
    EXPECT_EQ(bitmap.DitherMethod, 7u);
    EXPECT_EQ(bitmap.XResolution, 150);
    const BITMAPINFOHEADER header{40,
                                  33,
                                  7,
                                  1,
                                  static_cast<WORD>(bits),
                                  0,
                                  bitmap.DataSize,
                                  0,
                                  0,
                                  static_cast<DWORD>(bitmap.ColorCount),
                                  0};
    EXPECT_EQ(std::memcmp(&bitmap.DibHeader, &header, sizeof header), 0);
    EXPECT_EQ(bitmap.Flags, 0u);
    EXPECT_TRUE(IsAllZero(bitmap.Reserved1, sizeof bitmap.Reserved1));
    EXPECT_TRUE(IsAllZero(bitmap.DibColors, sizeof bitmap.DibColors));
    EXPECT_TRUE(IsAllZero(bitmap.Reserved5, sizeof bitmap.Reserved5));
    EXPECT_EQ(bitmap.Region, nullptr);
  }
}

TEST(Frame, InitRefusesOtherDepthsAndLetsSizesWrap) {
  BitmapHandle bitmap;
  for (const int32_t bits : {0, 2, 15, 48, -8}) {
    std::memset(&bitmap, 0xCC, sizeof bitmap);
    EXPECT_EQ(Vn_InitBitmap(&bitmap, 10, 10, bits), ERR_BITS_PER_PIXEL);
    EXPECT_TRUE(IsAllZero(&bitmap, sizeof bitmap));
  }
  EXPECT_EQ(Vn_InitBitmap(&bitmap, 1, 1, 1), OK);
  EXPECT_EQ(bitmap.BytesPerLine, 4u);
  EXPECT_EQ(Vn_InitBitmap(&bitmap, 3, 1, 24), OK);
  EXPECT_EQ(bitmap.BytesPerLine, 12u);
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
  EXPECT_EQ(info.Reserved, 0u);
  EXPECT_EQ(info.MajorVersion, 6);
  EXPECT_EQ(info.MinorVersion, 2);
  EXPECT_STREQ(info.BuildDate, "Aug 22 1996");
  EXPECT_STREQ(info.BuildTime, "16:40:36");
}

VnStatus VN_CALL GoOn(int32_t) { return OK; }

TEST(Frame, SettingsBelongToTheirThread) {
  EXPECT_EQ(Vn_SetDefaultXResolution(0), 150);
  EXPECT_EQ(Vn_SetDefaultYResolution(-5), 150);
  EXPECT_EQ(Vn_DefaultDithering(9), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_DefaultDithering(8), OK);
  EXPECT_EQ(Vn_SetStatusCallBack(GoOn), nullptr);

  std::thread([] {
    EXPECT_EQ(Vn_GetStatusCallBack(), nullptr);
    BitmapHandle bitmap;
    EXPECT_EQ(Vn_InitBitmap(&bitmap, 1, 1, 1), OK);
    EXPECT_EQ(bitmap.DitherMethod, 7u);
    const ThreadSettings& settings = CurrentThreadSettings();
    EXPECT_EQ(settings.OpenProc, &Vn_OsOpen);
    EXPECT_EQ(settings.DisplayMode, 12u);
    EXPECT_EQ(settings.PaintInfo.header.biSize, 40u);
    EXPECT_EQ(settings.PaintInfo.header.biPlanes, 1u);
    const auto* indexes = reinterpret_cast<const uint16_t*>(settings.PaintInfo.colors);
    for (uint32_t i = 0; i < 256; ++i)
      EXPECT_EQ(indexes[i], i);
    EXPECT_TRUE(IsAllZero(settings.PaintInfo.colors + 128, 128 * sizeof(RGBQUAD)));
    EXPECT_TRUE(IsAllZero(&settings.PrinterPaintInfo, sizeof settings.PrinterPaintInfo));
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
  EXPECT_EQ(heard(3), (std::vector<int32_t>{0, 33, 66, 100}));
  EXPECT_EQ(heard(10), (std::vector<int32_t>{0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100}));
  EXPECT_EQ(heard(1), (std::vector<int32_t>{0, 100}));
  for (const uint32_t units : {7u, 99u, 100u, 101u, 199u, 200u, 12345u}) {
    EXPECT_EQ(heard(units), ExpectedPercents(units)) << units;
  }
}

TEST(Frame, ProgressStopsWithTheCallbacksValue) {
  for (const size_t call : {1, 2, 5}) {
    const StatusLog log(call, 0);  // 0 is neither OK nor an error code
    EXPECT_EQ(Work(10), 0);
    EXPECT_EQ(log.percents().size(), call);
  }
}

TEST(Frame, EntryPointIgnoresOtherReasons) {
  EXPECT_EQ(DllMain(nullptr, 4, nullptr), 1);
  EXPECT_EQ(DllMain(nullptr, 0xFFFFFFFF, nullptr), 1);
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
  EXPECT_EQ(staticUser.bitmap.XResolution, 150);
  WriteRow(&staticUser.bitmap, 299, Bytes(900, 3));
  EXPECT_EQ(ReadRow(&staticUser.bitmap, 299), Bytes(900, 3));
}
#endif

// A thread without a block, and without a slot to put one in, works with the initial values.
TEST(Frame, WithoutAnAttachmentTheDefaultsHold) {
  ASSERT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, nullptr), 1);
  EXPECT_EQ(Vn_SetDefaultXResolution(75), 150);
  EXPECT_EQ(Vn_GetDefaultXResolution(), 75);
  EXPECT_EQ(Vn_GetDisplayMode(), 12u);
  ASSERT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), 1);
  EXPECT_EQ(Vn_GetDefaultXResolution(), 150);
}

HEADLESS_TEST(Frame, AttachmentFailsWithoutMemoryAndRecovers) {
  Headless_Counts before, after;
  Headless_GetCounts(&before);
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(Headless_Restart(), 0);
  Headless_FailNth(HEADLESS_MEMORY, 0);
  Headless_GetCounts(&after);
  EXPECT_EQ(after.globalBlocks, before.globalBlocks - 1);  // this thread's settings
  EXPECT_EQ(Headless_Restart(), 1);
  EXPECT_FALSE(OnWin32s());
}

HEADLESS_TEST(Frame, ThreadsGetAndLoseTheirBlock) {
  Headless_Counts before, during, after;
  Headless_GetCounts(&before);
  std::thread([&] {
    Vn_GetDefaultXResolution();
    Headless_GetCounts(&during);
  }).join();
  Headless_GetCounts(&after);
  EXPECT_EQ(during.globalBlocks, before.globalBlocks + 1);
  EXPECT_EQ(after.globalBlocks, before.globalBlocks);
  // The attachment's own allocation fails; the first use makes the block after all.
  Headless_FailNth(HEADLESS_MEMORY, 1);
  std::thread([] { EXPECT_EQ(Vn_GetDefaultXResolution(), 150); }).join();
  EXPECT_EQ(Headless_OperationCount(HEADLESS_MEMORY), 2u);
  Headless_FailNth(HEADLESS_MEMORY, 0);
}

HEADLESS_TEST(Frame, Win32sIsToldByTheVersion) {
  const struct {
    uint32_t version;
    bool win32s;
  } systems[] = {{HEADLESS_VERSION_WIN32S, true},
                 {0x80000003u, true},
                 {0xC0000004u, false},  // the Windows 95 line
                 {0x00000A03u, false},  // NT 3
                 {HEADLESS_VERSION_WIN32, false}};
  for (const auto& system : systems) {
    Headless_SetVersion(system.version);
    EXPECT_EQ(Headless_Restart(), 1);
    EXPECT_EQ(OnWin32s(), system.win32s) << std::hex << system.version;
  }
}

}  // namespace
}  // namespace vn::test
