// Blocks of the C library.
//
// A picture is copied into a new block as often as not, and the first touch of small pages then
// takes four times as long as the copy: 36 MiB on one core of a virtual machine, in milliseconds,
//   memcpy into memory that is there      4
//   into a new block, 4 KiB pages        18
//   into a new block, 2 MiB pages         5.4
// Blocks that the C library hands out again are warm already, and the advice changes nothing then.
#include "platform/headless/memory/plain_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace headless {
namespace {

// Shorter ones can miss most of their huge pages.
constexpr size_t kHugeBlockFrom = size_t{4} << 20;

void AdviseHugePages(void* block, size_t bytes) {
  static const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto start = reinterpret_cast<uintptr_t>(block);
  const uintptr_t first = (start + page - 1) / page * page, end = (start + bytes) / page * page;
  if (first < end) madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
}

}  // namespace

void* PlainMemory(size_t bytes, bool zeroed) {
  const size_t size = std::max<size_t>(bytes, 1);
  void* const block = zeroed ? std::calloc(1, size) : std::malloc(size);
  if (block && size >= kHugeBlockFrom) AdviseHugePages(block, size);
  return block;
}

}  // namespace headless
