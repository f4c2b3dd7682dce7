// Memory blocks, files with their tables of flags, and redirection.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {
namespace {

constexpr uint32_t kRead = 0, kWrite = 1, kBoth = 2, kCreate = 0x100, kTruncate = 0x200;
constexpr uint32_t kShareNone = 0x80, kShareRead = 0x100, kShareBoth = 0x180;
constexpr char kText[] = "0123456789";

// A temporary file for the length of a test, read-only or not at its end.
class TempFile {
 public:
  TempFile() {
    char name[MAX_PATH];
    EXPECT_EQ(Vn_OsGetTempName(name), 0);
    name_ = name;
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  ~TempFile() {
    std::error_code error;
    std::filesystem::permissions(name_, std::filesystem::perms::owner_all, error);
    EXPECT_EQ(Vn_OsDelete(name()), 0);
  }
  const char* name() const { return name_.c_str(); }
  uint64_t Size() const { return std::filesystem::file_size(name_); }
  void Write() const {
    const HANDLE file = Vn_OsCreat(name(), 0);
    EXPECT_EQ(Vn_OsWrite(file, kText, 10), 10);
    EXPECT_EQ(Vn_OsClose(file), 0);
  }

 private:
  std::string name_;
};

bool Opens(const char* name, uint32_t access, uint32_t share) {
  const HANDLE file = Vn_OsOpen(name, access, share);
  if (file == INVALID_HANDLE_VALUE) return false;
  EXPECT_EQ(Vn_OsClose(file), 0);
  return true;
}

HEADLESS_TEST(SystemLayer, BlocksKeepTheirBytesAcrossSizesAndFailures) {
  EXPECT_EQ(Vn_OsAlloc(0), nullptr);
  auto* block = static_cast<uint8_t*>(Vn_OsAllocInit(1000, 1));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::count(block, block + 1000, 0), 1000);
  std::memcpy(block, kText, sizeof kText);
  for (const uint32_t size : {5000u, 100000u, 11u}) {
    Headless_FailNth(HEADLESS_MEMORY, 1);
    EXPECT_EQ(Vn_OsReAlloc(block, size), nullptr);
    Headless_FailNth(HEADLESS_MEMORY, 0);
    EXPECT_STREQ(reinterpret_cast<char*>(block), kText);
    block = static_cast<uint8_t*>(Vn_OsReAlloc(block, size));
    ASSERT_NE(block, nullptr);
    EXPECT_STREQ(reinterpret_cast<char*>(block), kText);
  }
  EXPECT_EQ(Vn_OsFree(block), 0);
}

TEST(SystemLayer, FilesMoveBytes) {
  const TempFile temp;
  const HANDLE file = Vn_OsCreat(temp.name(), 0);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_EQ(Vn_OsWrite(file, kText, 10), 10);
  EXPECT_EQ(Vn_OsSeek(file, -4, 2), 6u);
  EXPECT_EQ(Vn_OsSeek(file, -4, 7), 6u);  // any other origin is the end
  EXPECT_EQ(Vn_OsSeek(file, 1, 1), 7u);
  EXPECT_EQ(Vn_OsSeek(file, -1, 0), 0xFFFFFFFFu);
  char bytes[16] = "";
  EXPECT_EQ(Vn_OsRead(file, bytes, 16), 3);  // the end of the file is no failure
  EXPECT_STREQ(bytes, "789");
  EXPECT_EQ(Vn_OsSeek(file, 12, 0), 12u);  // the gap that a write behind the end leaves is zeros
  EXPECT_EQ(Vn_OsWrite(file, "x", 1), 1);
  EXPECT_EQ(Vn_OsSeek(file, -3, 1), 10u);
  EXPECT_EQ(Vn_OsRead(file, bytes, 16), 3);
  EXPECT_EQ(std::memcmp(bytes, "\0\0x", 3), 0);
  EXPECT_EQ(Vn_OsDelete(temp.name()), -1);  // open
  EXPECT_EQ(Vn_OsClose(file), 0);
  EXPECT_EQ(Vn_OsClose(file), -1);
  EXPECT_EQ(Vn_OsRead(file, bytes, 1), -1);
}

HEADLESS_TEST(SystemLayer, AFullDiskIsAFailure) {
  const HANDLE file = Vn_OsOpen("/dev/full", kWrite, kShareBoth);
  EXPECT_EQ(Vn_OsWrite(file, kText, 10), -1);
  EXPECT_EQ(Vn_OsClose(file), 0);
}

TEST(SystemLayer, OpenFlags) {
  const TempFile temp;
  temp.Write();
  for (const uint32_t access : {kRead, kWrite, kBoth, 3u}) {
    char byte = 'x';
    const HANDLE file = Vn_OsOpen(temp.name(), access, kShareBoth);
    EXPECT_EQ(Vn_OsRead(file, &byte, 1), access == kWrite ? -1 : 1);
    EXPECT_EQ(Vn_OsWrite(file, &byte, 1), access == kRead ? -1 : 1);
    Vn_OsClose(file);
  }
  EXPECT_EQ(temp.Size(), 10u);  // none of these made it shorter
  EXPECT_TRUE(Opens(temp.name(), kBoth | kTruncate, kShareBoth));
  EXPECT_EQ(temp.Size(), 0u);
  const std::string other = std::string(temp.name()) + ".other";
  EXPECT_FALSE(Opens(other.c_str(), kBoth | kTruncate, kShareBoth));
  EXPECT_TRUE(Opens(other.c_str(), kBoth | kCreate | kTruncate, kShareBoth));
  EXPECT_EQ(Vn_OsDelete(other.c_str()), 0);
  // Made read-only, a file writes nothing and cannot be deleted.
#ifdef _WIN32  // Wine keeps the attributes of a file that it replaces
  ASSERT_EQ(Vn_OsDelete(temp.name()), 0);
#endif
  const HANDLE file = Vn_OsCreat(temp.name(), 1);
  EXPECT_EQ(Vn_OsWrite(file, kText, 1), -1);
  Vn_OsClose(file);
  EXPECT_TRUE(Opens(temp.name(), kRead, kShareBoth));
  EXPECT_EQ(Vn_OsDelete(temp.name()), -1);
}

TEST(SystemLayer, ShareFlags) {
  const TempFile temp;
  temp.Write();
  const struct {
    uint32_t share;
    bool reads, writes;  // whether another handle may
  } rows[] = {{kShareNone, false, false}, {kShareRead, true, false}, {kShareBoth, true, true}};
  for (const auto& row : rows) {
    const HANDLE first = Vn_OsOpen(temp.name(), kRead, row.share);
    ASSERT_NE(first, INVALID_HANDLE_VALUE);
    EXPECT_EQ(Opens(temp.name(), kRead, kShareBoth), row.reads);
    EXPECT_EQ(Opens(temp.name(), kWrite, kShareBoth), row.writes);
    // The newcomer's share mode must allow what the first handle does.
    EXPECT_FALSE(Opens(temp.name(), kRead, kShareNone));
    Vn_OsClose(first);
  }
}

// Redirected functions: each leaves a mark and goes on to the one below it.
std::string trace;
VnReadProc below = nullptr;

HANDLE VN_CALL TracedOpen(const char* name, uint32_t access, uint32_t share) {
  trace += 'o';
  return Vn_OsOpen(name, access, share);
}
int32_t VN_CALL TracedRead(HANDLE file, void* buffer, uint32_t count) {
  trace += 'r';
  return Vn_OsRead(file, buffer, count);
}
int32_t VN_CALL TracedWrite(HANDLE, const void*, uint32_t count) {
  trace += 'w';
  return static_cast<int32_t>(count);
}
uint32_t VN_CALL TracedSeek(HANDLE, int32_t offset, int32_t origin) {
  trace += 's';
  return static_cast<uint32_t>(offset + origin);
}
int32_t VN_CALL TracedClose(HANDLE file) {
  trace += 'c';
  return Vn_OsClose(file);
}
int32_t VN_CALL FilterRead(HANDLE file, void* buffer, uint32_t count) {
  trace += 'f';
  return below(file, buffer, count);
}

// All five redirected calls on one file; true when they behave as the direct ones.
void UseFile(const char* name) {
  char byte = 0;
  const HANDLE file = Vn_RedirectedOpen(name, kBoth, kShareBoth);
  Vn_RedirectedRead(file, &byte, 1);
  Vn_RedirectedWrite(file, &byte, 1);
  Vn_RedirectedSeek(file, 2, 0);
  EXPECT_EQ(Vn_RedirectedClose(file), 0);
}

TEST(SystemLayer, RedirectionsAndFiltersPerThread) {
  const TempFile temp;
  temp.Write();
  trace.clear();
  UseFile(temp.name());
  EXPECT_EQ(trace, "");
  Vn_RedirectIO(TracedOpen, TracedRead, TracedWrite, TracedSeek, TracedClose);
  UseFile(temp.name());
  EXPECT_EQ(trace, "orwsc");
  std::thread([&] { UseFile(temp.name()); }).join();
  EXPECT_EQ(trace, "orwsc");

  Vn_RedirectIO(nullptr, TracedRead, nullptr, nullptr, nullptr);
  VnSeekProc seek = nullptr;  // only asks
  below = FilterRead;
  Vn_FilterIO(nullptr, &below, nullptr, &seek, nullptr);
  EXPECT_EQ(below, &TracedRead);
  EXPECT_EQ(seek, &Vn_OsSeek);
  UseFile(temp.name());
  EXPECT_EQ(trace, "orwscfr");
  Vn_RedirectIO(nullptr, nullptr, nullptr, nullptr, nullptr);
}

HEADLESS_TEST(SystemLayer, TemporaryFilesPassRedirectionBy) {
  const Win32sScope win32s;
  trace.clear();
  Vn_RedirectIO(TracedOpen, TracedRead, TracedWrite, TracedSeek, TracedClose);
  BitmapHandle bitmap;
  Vn_InitBitmap(&bitmap, 10, 10, 8);
  ASSERT_EQ(Vn_AllocateBitmap(&bitmap, STORAGE_DISK), OK);
  WriteRow(&bitmap, 3, Bytes(12, 42));
  EXPECT_EQ(ReadRow(&bitmap, 3), Bytes(12, 42));
  Vn_FreeBitmap(&bitmap);
  EXPECT_EQ(trace, "");
  Vn_RedirectIO(nullptr, nullptr, nullptr, nullptr, nullptr);
}

}  // namespace
}  // namespace vn::test
