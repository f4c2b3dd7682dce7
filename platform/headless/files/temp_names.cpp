// GetTempPathA, GetTempFileNameA, nameless temporary files.
#include "platform/headless/files/temp_names.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/headless/base/kernel_objects.h"

namespace headless {
namespace {

constexpr size_t kPrefixLetters = 3;  // of a prefix no more count
constexpr size_t kNameLength = 13;    // separator, prefix, 4 digits, ".TMP", terminator

// Numbers of temporary files run from a start that differs between processes.
std::atomic<uint32_t> nextNumber{0};

uint32_t StartNumber() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<uint32_t>(getpid()) * 40503u + static_cast<uint32_t>(now.tv_nsec >> 10);
}

bool WriteName(char* buffer, const char* path, const char* prefix, uint32_t number) {
  const size_t length = std::strlen(path);
  const char* separator = length == 0 || path[length - 1] == '/' ? "" : "/";
  const int written =
      std::snprintf(buffer, MAX_PATH, "%s%s%.3s%04" PRIX32 ".TMP", path, separator, prefix, number);
  return written > 0 && written < MAX_PATH;
}

}  // namespace

std::string TempFolder() {
  const char* folder = std::getenv("TMPDIR");
  std::string path = folder && *folder ? folder : "/tmp";
  if (path.back() != '/') path += '/';
  return path;
}

bool IsTempName(const char* name) {
  const char* const separator = std::strrchr(name, '/');
  const char* const leaf = separator ? separator + 1 : name;
  constexpr const char* kEnding = ".TMP";
  constexpr size_t kDigits = 4;
  const size_t length = std::strlen(leaf), ending = std::strlen(kEnding);
  if (length < kDigits + ending || length > kPrefixLetters + kDigits + ending) return false;
  const char* const digits = leaf + length - ending - kDigits;
  return std::strspn(digits, "0123456789ABCDEF") == kDigits &&
         std::strcmp(digits + kDigits, kEnding) == 0;
}

int OpenUnlinkedTempFile() {
  std::string folder = TempFolder();
  const int nameless = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (nameless >= 0) return nameless;
  std::string name = folder + "VNXXXXXX";  // a file system that knows no nameless files
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file >= 0) unlink(name.c_str());
  return file;
}

}  // namespace headless

DWORD GetTempPathA(DWORD size, LPSTR buffer) {
  return headless::WithoutExceptions<DWORD>(0, [&]() -> DWORD {
    const std::string folder = headless::TempFolder();
    const auto length = static_cast<DWORD>(folder.size());
    if (length >= size) return length + 1;  // the room that is needed
    std::memcpy(buffer, folder.c_str(), length + 1);
    return length;
  });
}

UINT GetTempFileNameA(LPCSTR path, LPCSTR prefix, UINT unique, LPSTR buffer) {
  if (!*path || std::strlen(path) + headless::kNameLength > MAX_PATH) return 0;
  if (unique != 0) {  // only the name is wanted
    return headless::WriteName(buffer, path, prefix, unique & 0xFFFF) ? unique : 0;
  }
  uint32_t start = 0;
  headless::nextNumber.compare_exchange_strong(start, headless::StartNumber() | 1);
  for (uint32_t tries = 0; tries <= 0xFFFF; ++tries) {
    const uint32_t number = headless::nextNumber.fetch_add(1) & 0xFFFF;
    if (number == 0) continue;
    if (!headless::WriteName(buffer, path, prefix, number)) return 0;
    const int file = open(buffer, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file >= 0) {
      close(file);
      return number;
    }
    if (errno != EEXIST) return 0;
  }
  return 0;
}
