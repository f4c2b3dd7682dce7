// The system half of the platform: handles that stay dead, mappings, memory, threads. What can be
// asked of Windows too runs there as well.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "platform/win32.h"
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

HEADLESS_TEST(PlatformSystem, LargeMappingsLieInAFile) {
  constexpr uint32_t kSize = 80u << 20;
  for (const uint64_t free : {uint64_t{100} << 20, uint64_t{400} << 20}) {
    Headless_SetFreeMemory(free);
    const HANDLE mapping = NewMapping(kSize);
    uint8_t* view = MapWhole(mapping);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view[kSize - 1], 0);
    view[kSize - 1] = view[0] = 5;
    EXPECT_EQ(MapWhole(mapping)[kSize - 1], 5);
    EXPECT_TRUE(UnmapViewOfFile(view));
    EXPECT_TRUE(UnmapViewOfFile(view));
    EXPECT_TRUE(CloseHandle(mapping));
  }
  Headless_SetFreeMemory(0);
}

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
      Random random(static_cast<uint64_t>(t));
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
