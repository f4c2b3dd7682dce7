// The system half of the platform: handles that stay dead, mappings, memory, threads. What can be
// asked of Windows too runs there as well.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>
#ifndef _WIN32
#include <sys/stat.h>

#include "tests/support/temporary_folder.h"
#endif

#include <vncore/platform/win32.h>
#include "tests/support/headless_control.h"
#include "tests/support/random.h"

namespace vn::test {
namespace {

HANDLE NewMapping(uint32_t size) {
  return CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, SEC_COMMIT | PAGE_READWRITE, 0, size,
                            nullptr);
}
uint8_t* MapWhole(HANDLE mapping) {
  return static_cast<uint8_t*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
}

TEST(PlatformSystem, MappingsComeAsZerosAgainAndAgain) {
  // Sizes on both sides of every way to get pages; each is dirtied before it is given back.
  Random random(6);
  for (int round = 0; round < 60; ++round) {
    const uint32_t sizes[] = {1, 5000, 70000, 300000, 1u << 20, (1u << 20) + 1, 3u << 20, 9u << 20};
    const uint32_t size = sizes[random.Between(0, 7)];
    const HANDLE mapping = NewMapping(size);
    uint8_t* view = MapWhole(mapping);
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(view[0] == 0 && std::memcmp(view, view + 1, size - 1) == 0) << size;
    std::memset(view, 0xEE, size);
    EXPECT_TRUE(UnmapViewOfFile(view));
    EXPECT_TRUE(CloseHandle(mapping));
  }
}

TEST(PlatformSystem, AMappingLivesAsLongAsItsViews) {
  const HANDLE mapping = NewMapping(100000);
  uint8_t* first = MapWhole(mapping);
  uint8_t* second = MapWhole(mapping);
  auto* upper = static_cast<uint8_t*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 65536, 0));
  first[65536] = 9;
  EXPECT_EQ(second[65536], 9);
  EXPECT_EQ(upper[0], 9);
  EXPECT_EQ(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 4096, 0), nullptr);  // 64 KiB steps
  EXPECT_TRUE(CloseHandle(mapping));
  EXPECT_EQ(MapWhole(mapping), nullptr);
  EXPECT_FALSE(CloseHandle(mapping));
  EXPECT_TRUE(UnmapViewOfFile(first));
  EXPECT_EQ(second[65536], 9);
  EXPECT_TRUE(UnmapViewOfFile(second));
  EXPECT_TRUE(UnmapViewOfFile(upper));
  EXPECT_FALSE(UnmapViewOfFile(upper));
}

#ifndef _WIN32
// What memory has no room for lies in a file, and where there is no place for one it fails: the
// system would hand out the addresses and end the process later.
TEST(PlatformSystem, LargeMappingsLieInAFile) {
  constexpr uint32_t kSize = 160u << 20;
  Headless_SetFreeMemory(kSize - 1);
  const HANDLE mapping = NewMapping(kSize);
  uint8_t* view = MapWhole(mapping);
  ASSERT_NE(view, nullptr);
  view[kSize - 1] = view[0] = 5;
  EXPECT_EQ(MapWhole(mapping)[kSize - 1], 5);
  EXPECT_TRUE(UnmapViewOfFile(view));
  EXPECT_TRUE(UnmapViewOfFile(view));
  EXPECT_TRUE(CloseHandle(mapping));

  const TempDirScope nowhere("/dev/null");
  EXPECT_EQ(NewMapping(kSize), nullptr);
  EXPECT_EQ(GlobalAlloc(GMEM_MOVEABLE, kSize), nullptr);
  Headless_SetFreeMemory(kSize);
  const HANDLE inMemory = NewMapping(kSize);
  EXPECT_TRUE(CloseHandle(inMemory));
  EXPECT_EQ(GlobalFree(GlobalAlloc(GMEM_MOVEABLE, kSize)), nullptr);
  Headless_SetFreeMemory(0);
}

// A file that a write or a new end makes longer has all its room on the disk: what is written into
// it later cannot find the disk full.
TEST(PlatformSystem, FilesGrowWithoutHoles) {
  char folder[MAX_PATH], name[MAX_PATH];
  ASSERT_NE(GetTempPathA(MAX_PATH, folder), 0u);
  ASSERT_NE(GetTempFileNameA(folder, "VN", 0, name), 0u);
  const HANDLE file =
      CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const auto taken = [&] {
    struct stat state {};
    EXPECT_EQ(stat(name, &state), 0);
    return std::pair(state.st_size, state.st_blocks * 512);
  };
  DWORD done = 0;
  for (const uint32_t size : {3u << 20, 5u << 20}) {
    EXPECT_EQ(SetFilePointer(file, static_cast<LONG>(size - 1), nullptr, FILE_BEGIN), size - 1);
    if (size == 3u << 20) {
      EXPECT_TRUE(::WriteFile(file, "", 1, &done, nullptr));
    } else {
      SetFilePointer(file, 1, nullptr, FILE_CURRENT);
      EXPECT_TRUE(SetEndOfFile(file));
    }
    EXPECT_EQ(taken().first, static_cast<off_t>(size));
    EXPECT_GE(taken().second, static_cast<off_t>(size));
  }
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_TRUE(DeleteFileA(name));
}

// A temporary file's name opens that file or none: no link, and no file that has another name too.
TEST(PlatformSystem, TemporaryNamesOpenNothingElse) {
  char folder[MAX_PATH], name[MAX_PATH];
  ASSERT_NE(GetTempPathA(MAX_PATH, folder), 0u);
  ASSERT_NE(GetTempFileNameA(folder, "VN", 0, name), 0u);
  const std::filesystem::path temporary = name, other = temporary.string() + ".other";
  const auto opens = [&] {
    const HANDLE file =
        CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file);
  };
  EXPECT_TRUE(opens());
  std::filesystem::rename(temporary, other);
  std::filesystem::create_symlink(other, temporary);
  EXPECT_FALSE(opens());
  std::filesystem::remove(temporary);
  std::filesystem::create_hard_link(other, temporary);
  EXPECT_FALSE(opens());
  std::filesystem::remove(other);
  EXPECT_TRUE(opens());
  std::filesystem::remove(temporary);
}
#endif

TEST(PlatformSystem, BlocksByHandleAndByAddress) {
  const HGLOBAL moveable = GlobalAlloc(GMEM_MOVEABLE, 0);
  EXPECT_EQ(GlobalLock(moveable), nullptr);
  EXPECT_EQ(GlobalReAlloc(moveable, 50000, GMEM_MOVEABLE | GMEM_ZEROINIT), moveable);
  auto* bytes = static_cast<uint8_t*>(GlobalLock(moveable));
  ASSERT_NE(bytes, nullptr);
  EXPECT_EQ(std::count(bytes, bytes + 50000, 0), 50000);
  EXPECT_EQ(GlobalHandle(bytes), moveable);
  EXPECT_EQ(GlobalLock(moveable), bytes);
  EXPECT_TRUE(GlobalUnlock(moveable));
  EXPECT_FALSE(GlobalUnlock(moveable));
  EXPECT_EQ(GlobalFree(moveable), nullptr);
}

// On Windows such calls may raise what a debugger sees; here they must simply fail.
HEADLESS_TEST(PlatformSystem, DeadAndForeignMemoryFails) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, 100);
  void* bytes = GlobalLock(memory);
  GlobalFree(memory);
  const HGLOBAL next = GlobalAlloc(GMEM_MOVEABLE, 100);
  EXPECT_NE(next, memory);
  GlobalFree(next);
  EXPECT_EQ(GlobalHandle(bytes), nullptr);
  EXPECT_EQ(GlobalLock(memory), nullptr);
  EXPECT_FALSE(GlobalUnlock(memory));
  EXPECT_EQ(GlobalReAlloc(memory, 5, GMEM_MOVEABLE), nullptr);
  EXPECT_EQ(GlobalFree(memory), memory);
  EXPECT_EQ(GlobalSize(memory), 0u);
  int local = 0;
  EXPECT_EQ(GlobalHandle(&local), nullptr);
  const HGLOBAL fixed = GlobalAlloc(GMEM_FIXED, 10);
  EXPECT_EQ(GlobalLock(fixed), fixed);
  EXPECT_TRUE(GlobalUnlock(fixed));  // nobody locks it: always so
  GlobalFree(fixed);
}

// What a thread stored stays its own, and is gone when the slot is given to somebody else.
TEST(PlatformSystem, SlotsComeEmpty) {
  int word = 0;
  const DWORD slot = TlsAlloc();
  EXPECT_TRUE(TlsSetValue(slot, &word));
  std::thread([=] { EXPECT_EQ(TlsGetValue(slot), nullptr); }).join();
  EXPECT_EQ(TlsGetValue(slot), &word);
  EXPECT_TRUE(TlsFree(slot));
  const DWORD next = TlsAlloc();  // the same number, as a rule
  EXPECT_EQ(TlsGetValue(next), nullptr);
  EXPECT_TRUE(TlsFree(next));
}

// All tables at once from several threads; the counts of the test run show what was lost.
HEADLESS_TEST(PlatformSystem, ThreadsShareTheTables) {
  std::vector<std::thread> threads;
  std::atomic<int> faults{0};
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &faults] {
      Random random(t);
      for (int i = 0; i < 300; ++i) {
        const auto size = static_cast<uint32_t>(random.Between(1, 200000));
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
        auto* bytes = static_cast<uint8_t*>(GlobalLock(memory));
        bytes[0] = bytes[size - 1] = static_cast<uint8_t>(t);
        const HANDLE mapping = NewMapping(size);
        uint8_t* view = MapWhole(mapping);
        faults += view[0] != 0 || view[size - 1] != 0;
        std::memset(view, t + 1, size);
        faults += GlobalHandle(bytes) != memory || bytes[size - 1] != t;
        faults += !UnmapViewOfFile(view) || !CloseHandle(mapping) || GlobalFree(memory);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(faults, 0);
}

}  // namespace
}  // namespace vn::test
