// What the machine, or the container that the process runs in, has left.
#include "platform/headless/memory/free_memory.h"

#include <algorithm>
#include <atomic>
#include <cinttypes>
#include <cstdio>
#include <optional>

#include <vncore/platform/headless/headless.h>

namespace headless {
namespace {

constinit std::atomic<uint64_t> claimed{0};

// Below this nobody asks how much is free.
constexpr uint64_t kAskFrom = uint64_t{128} << 20;

// The number in the first line of a file of the system that is of the form; nothing when there is
// none ("max" is no number).
std::optional<uint64_t> ReadNumber(const char* name, const char* form) {
  std::FILE* file = std::fopen(name, "re");
  if (!file) return std::nullopt;
  std::optional<uint64_t> found;
  char line[128];
  while (!found && std::fgets(line, sizeof line, file)) {
    uint64_t number = 0;
    if (std::sscanf(line, form, &number) == 1) found = number;
  }
  std::fclose(file);
  return found;
}

// Bytes; a huge number when nobody can tell.
uint64_t FreeMemory() {
  if (const uint64_t told = claimed) return told;
  const uint64_t kibibytes =
      ReadNumber("/proc/meminfo", "MemAvailable: %" SCNu64).value_or(UINT64_MAX >> 10);
  const auto limit = ReadNumber("/sys/fs/cgroup/memory.max", "%" SCNu64);  // a container's own
  const auto used = ReadNumber("/sys/fs/cgroup/memory.current", "%" SCNu64);
  if (!limit || !used) return kibibytes << 10;
  // Pages of files count as used there, and go when somebody needs the room.
  const char* const kinds = "/sys/fs/cgroup/memory.stat";
  const uint64_t files = ReadNumber(kinds, "active_file %" SCNu64).value_or(0) +
                         ReadNumber(kinds, "inactive_file %" SCNu64).value_or(0);
  const uint64_t held = *used - std::min(*used, files);
  return std::min(kibibytes << 10, *limit - std::min(*limit, held));
}

}  // namespace

bool FitsInMemory(uint64_t bytes) { return bytes < kAskFrom || bytes <= FreeMemory(); }

}  // namespace headless

void Headless_SetFreeMemory(uint64_t bytes) { headless::claimed = bytes; }
