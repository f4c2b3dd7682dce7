// What the machine, or the container that the process runs in, has left.
#include "platform/headless/free_memory.h"

#include <algorithm>
#include <atomic>
#include <cinttypes>
#include <cstdio>

#include "platform/headless/headless.h"

namespace headless {
namespace {

constinit std::atomic<uint64_t> claimed{0};

// A number out of a one-line file of the system; false when there is none ("max" is no number).
bool ReadNumber(const char* name, uint64_t* number) {
  std::FILE* file = std::fopen(name, "re");
  if (!file) return false;
  const bool found = std::fscanf(file, "%" SCNu64, number) == 1;
  std::fclose(file);
  return found;
}

uint64_t AvailableMemory() {
  uint64_t kibibytes = UINT64_MAX >> 10;
  if (std::FILE* file = std::fopen("/proc/meminfo", "re")) {
    char line[128];
    while (std::fgets(line, sizeof line, file)) {
      if (std::sscanf(line, "MemAvailable: %" SCNu64, &kibibytes) == 1) break;
    }
    std::fclose(file);
  }
  return kibibytes << 10;
}

}  // namespace

uint64_t FreeMemory() {
  if (const uint64_t told = claimed) return told;
  uint64_t free = AvailableMemory();
  uint64_t limit = 0, used = 0;  // a container's own bounds
  if (ReadNumber("/sys/fs/cgroup/memory.max", &limit) &&
      ReadNumber("/sys/fs/cgroup/memory.current", &used)) {
    free = std::min(free, limit > used ? limit - used : 0);
  }
  return free;
}

}  // namespace headless

void Headless_SetFreeMemory(uint64_t bytes) { headless::claimed = bytes; }
