// Memory between two pages that nobody may touch.
#ifndef VNCORE_TESTS_SUPPORT_GUARDED_PAGES_H
#define VNCORE_TESTS_SUPPORT_GUARDED_PAGES_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <vncore/vncore.h>

#ifndef _WIN32
#include <sys/mman.h>
#endif

namespace vn::test {

class GuardedPages {
 public:
  // `bytes`: a multiple of 64 KiB, which every page size divides.
  explicit GuardedPages(size_t bytes) : bytes_(bytes) {
    const size_t all = bytes + 2 * kGuard;
#ifdef _WIN32
    memory_ = static_cast<uint8_t*>(VirtualAlloc(nullptr, all, MEM_RESERVE, PAGE_NOACCESS));
    if (!VirtualAlloc(begin(), bytes, MEM_COMMIT, PAGE_READWRITE)) std::abort();
#else
    memory_ =
        static_cast<uint8_t*>(mmap(nullptr, all, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (mprotect(begin(), bytes, PROT_READ | PROT_WRITE) != 0) std::abort();
#endif
  }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;
  ~GuardedPages() {
#ifdef _WIN32
    VirtualFree(memory_, 0, MEM_RELEASE);
#else
    munmap(memory_, bytes_ + 2 * kGuard);
#endif
  }
  uint8_t* begin() const { return memory_ + kGuard; }
  uint8_t* end() const { return begin() + bytes_; }

 private:
  static constexpr size_t kGuard = 1 << 16;
  size_t bytes_;
  uint8_t* memory_;
};

}  // namespace vn::test

#endif
