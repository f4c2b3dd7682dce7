// The system half of the platform: handles that stay dead, mappings, memory, files, local storage,
// injection. What can be asked of Windows too runs there as well.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <set>
#include <string>
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

std::string NewTempName() {
  char path[MAX_PATH], name[MAX_PATH];
  EXPECT_GT(GetTempPathA(MAX_PATH, path), 0u);
  EXPECT_NE(GetTempFileNameA(path, "VN", 0, name), 0u);
  return name;
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
  EXPECT_EQ(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 131072, 0), nullptr);
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
  EXPECT_EQ(GlobalLock(nullptr), nullptr);
  const HGLOBAL moveable = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 100);
  auto* bytes = static_cast<uint8_t*>(GlobalLock(moveable));
  ASSERT_NE(bytes, nullptr);
  EXPECT_EQ(GlobalHandle(bytes), moveable);
  EXPECT_GE(GlobalSize(moveable), 100u);
  EXPECT_EQ(GlobalLock(moveable), bytes);
  EXPECT_TRUE(GlobalUnlock(moveable));
  EXPECT_FALSE(GlobalUnlock(moveable));
  bytes = nullptr;
  EXPECT_EQ(GlobalReAlloc(moveable, 50000, GMEM_MOVEABLE | GMEM_ZEROINIT), moveable);
  bytes = static_cast<uint8_t*>(GlobalLock(moveable));
  EXPECT_EQ(std::count(bytes, bytes + 50000, 0), 50000);
  GlobalUnlock(moveable);
  EXPECT_EQ(GlobalFree(moveable), nullptr);

  const HGLOBAL fixed = GlobalAlloc(GMEM_FIXED, 10);
  EXPECT_EQ(GlobalLock(fixed), fixed);
  EXPECT_EQ(GlobalHandle(fixed), fixed);
  EXPECT_EQ(GlobalFree(fixed), nullptr);

  const HGLOBAL empty = GlobalAlloc(GMEM_MOVEABLE, 0);
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(GlobalLock(empty), nullptr);
  EXPECT_EQ(GlobalReAlloc(empty, 8, GMEM_MOVEABLE), empty);
  EXPECT_NE(GlobalLock(empty), nullptr);
  GlobalUnlock(empty);
  EXPECT_EQ(GlobalFree(empty), nullptr);
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

HEADLESS_TEST(PlatformSystem, HandlesAreNeverGivenOutTwice) {
  std::set<HANDLE> seen;
  for (int i = 0; i < 500; ++i) {
    const HANDLE mapping = NewMapping(64);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, 64);
    EXPECT_TRUE(seen.insert(mapping).second);
    EXPECT_TRUE(seen.insert(memory).second);
    EXPECT_FALSE(CloseHandle(memory));  // of another kind
    EXPECT_EQ(GlobalLock(mapping), nullptr);
    CloseHandle(mapping);
    GlobalFree(memory);
  }
}

TEST(PlatformSystem, FilePositions) {
  const std::string name = NewTempName();
  const HANDLE file = CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_EQ(SetFilePointer(file, 100, nullptr, FILE_BEGIN), 100u);
  DWORD done = 99;
  EXPECT_TRUE(WriteFile(file, "end", 3, &done, nullptr));
  EXPECT_EQ(done, 3u);
  EXPECT_EQ(SetFilePointer(file, -2, nullptr, FILE_CURRENT), 101u);
  EXPECT_EQ(SetFilePointer(file, -200, nullptr, FILE_CURRENT), INVALID_SET_FILE_POINTER);
  EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_CURRENT), 101u);  // a failure moves nothing
  EXPECT_TRUE(SetEndOfFile(file));
  EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_END), 101u);
  // Without a high word a position stays within 32 bits.
  LONG high = 1;
  EXPECT_EQ(SetFilePointer(file, 7, &high, FILE_BEGIN), 7u);
  EXPECT_EQ(high, 1);
#ifndef _WIN32  // as Windows does it; Wine wraps the position instead
  EXPECT_EQ(SetFilePointer(file, 1, nullptr, FILE_CURRENT), INVALID_SET_FILE_POINTER);
#endif
  EXPECT_EQ(SetFilePointer(file, 99, nullptr, FILE_BEGIN), 99u);
  char bytes[8] = "";
  EXPECT_TRUE(ReadFile(file, bytes, 8, &done, nullptr));
  EXPECT_EQ(done, 2u);
  EXPECT_EQ(bytes[0], 0);
  EXPECT_EQ(bytes[1], 'e');
  EXPECT_TRUE(ReadFile(file, bytes, 8, &done, nullptr));
  EXPECT_EQ(done, 0u);
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_FALSE(CloseHandle(file));
  EXPECT_TRUE(DeleteFileA(name.c_str()));
}

TEST(PlatformSystem, TemporaryNames) {
  char path[MAX_PATH], tiny[2];
  const DWORD length = GetTempPathA(MAX_PATH, path);
  EXPECT_EQ(length, std::strlen(path));
  EXPECT_TRUE(path[length - 1] == '/' || path[length - 1] == '\\');
  EXPECT_GE(GetTempPathA(sizeof tiny, tiny), length);  // the room that it needs
  std::set<std::string> names;
  for (int i = 0; i < 20; ++i)
    names.insert(NewTempName());
  EXPECT_EQ(names.size(), 20u);
  for (const std::string& name : names) {
    EXPECT_EQ(name.substr(length, 2), "VN");
    EXPECT_TRUE(DeleteFileA(name.c_str())) << name;
  }
  char name[MAX_PATH];
  EXPECT_EQ(GetTempFileNameA("no such folder", "VN", 0, name), 0u);
}

TEST(PlatformSystem, LocalStorageIsPerThread) {
  const DWORD slot = TlsAlloc();
  ASSERT_NE(slot, TLS_OUT_OF_INDEXES);
  int here = 0, there = 0;
  EXPECT_EQ(TlsGetValue(slot), nullptr);
  EXPECT_TRUE(TlsSetValue(slot, &here));
  std::thread([&] {
    EXPECT_EQ(TlsGetValue(slot), nullptr);
    EXPECT_TRUE(TlsSetValue(slot, &there));
    EXPECT_EQ(TlsGetValue(slot), &there);
  }).join();
  EXPECT_EQ(TlsGetValue(slot), &here);
  EXPECT_TRUE(TlsFree(slot));
  EXPECT_FALSE(TlsSetValue(0xFFFFFF, &here));
  const DWORD again = TlsAlloc();
  EXPECT_EQ(TlsGetValue(again), nullptr);  // nothing is left of an earlier owner
  EXPECT_TRUE(TlsFree(again));
}

TEST(PlatformSystem, Modules) {
  const HMODULE gdi = GetModuleHandleA("GDI32");
  EXPECT_NE(gdi, nullptr);
  EXPECT_EQ(GetModuleHandleA("gdi32.dll"), gdi);
  EXPECT_EQ(GetModuleHandleA("no such module"), nullptr);
  EXPECT_NE(GetProcAddress(gdi, "CreateDIBSection"), nullptr);
#ifndef _WIN32  // Wine has the entries of every line of Windows at once
  EXPECT_EQ(GetProcAddress(GetModuleHandleA("KERNEL32"), "UTRegister"), nullptr);
#endif
  const HMODULE kernel = LoadLibraryA("KERNEL32.DLL");
  EXPECT_EQ(kernel, GetModuleHandleA("KERNEL32"));
  EXPECT_TRUE(FreeLibrary(kernel));
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  EXPECT_EQ(SetErrorMode(mode), static_cast<UINT>(SEM_FAILCRITICALERRORS));
}

HEADLESS_TEST(PlatformSystem, InjectionFailsOneCallOfItsFamily) {
  Headless_FailNth(HEADLESS_MEMORY, 3);
  std::vector<HGLOBAL> blocks;
  for (int i = 0; i < 5; ++i) {
    blocks.push_back(GlobalAlloc(GMEM_MOVEABLE, 10));
    EXPECT_EQ(blocks.back() == nullptr, i == 2);
  }
  EXPECT_EQ(Headless_OperationCount(HEADLESS_MEMORY), 5u);
  for (HGLOBAL block : blocks) {
    if (block) GlobalFree(block);
  }
  Headless_FailNth(HEADLESS_MEMORY, 2);
  const HANDLE mapping = NewMapping(10);
  EXPECT_NE(mapping, nullptr);
  EXPECT_EQ(MapWhole(mapping), nullptr);
  EXPECT_TRUE(CloseHandle(mapping));
  Headless_FailNth(HEADLESS_MEMORY, 0);
  EXPECT_EQ(Headless_OperationCount(HEADLESS_MEMORY), 0u);
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
