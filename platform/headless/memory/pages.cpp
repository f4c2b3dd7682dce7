// Pages for file mappings: huge pages for large runs, a small cache of released runs, and an
// unlinked temporary file for what memory cannot hold.
//
// A picture is written once from end to end, so the first touch of its pages is a cost like the
// work itself. Measured on one core of a virtual machine, filling a new run and giving it back:
//   4 KiB pages          2 GB/s at every size (populated at once: 3 GB/s)
//   2 MiB pages         29 GB/s up to 16 MiB, 9 to 11 GB/s above
//   a released run, zeroed and filled again  58 GB/s at 64 KiB, 38 at 16 MiB, 22 above
//   the same with MADV_FREE at release       half of that; with MADV_DONTNEED no gain at all
// Hence: runs of 1 MiB and more are made of huge pages, shorter ones are populated at once, and
// released runs are kept, unless they are so large that keeping them would show as resident memory.
//
// In a sanitizer build a run ends at its last byte: what follows is forbidden while it lives, and a
// released run is unmapped at once.
#include "platform/headless/memory/pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <mutex>
#include <new>
#include <utility>

#include "platform/headless/files/disk_space.h"
#include "platform/headless/files/temp_names.h"
#include "platform/headless/memory/free_memory.h"
#include "platform/headless/memory/guard_bytes.h"

namespace headless {
namespace {

constexpr size_t kPage = 4096;  // granularity of run lengths; larger system pages only round more
constexpr size_t kHugePage = size_t{2} << 20;
constexpr size_t kHugeFrom = size_t{1} << 20;  // shorter runs would waste most of a huge page

constexpr size_t kCacheRuns = 16;
constexpr size_t kCacheBytes = size_t{16} << 20;

size_t RoundUp(size_t bytes, size_t to) { return (bytes + to - 1) / to * to; }

uint8_t* MapMemory(size_t bytes, int extraFlags) {
  void* at =
      mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | extraFlags, -1, 0);
  return at == MAP_FAILED ? nullptr : static_cast<uint8_t*>(at);
}

// A run of huge pages begins at a multiple of their size; what the search for it took too much goes
// back. Where the system has no huge pages to give the run works all the same.
uint8_t* MapHugePages(size_t bytes) {
  uint8_t* wide = MapMemory(bytes + kHugePage, 0);
  if (!wide) return nullptr;
  const size_t before = (kHugePage - reinterpret_cast<uintptr_t>(wide) % kHugePage) % kHugePage;
  uint8_t* base = wide + before;
  if (before) munmap(wide, before);
  munmap(base + bytes, kHugePage - before);
  madvise(base, bytes, MADV_HUGEPAGE);
  return base;
}

}  // namespace

// Released runs, for the next one of about their size. Shared by all threads.
class PageCache {
 public:
  static PageCache& Get() {
    static auto& cache = *new PageCache;  // outlives every static owner of pages
    return cache;
  }

  // The smallest run that holds `bytes` and is not much too long; contents are what they were.
  Pages Take(size_t bytes) {
    const std::lock_guard lock(mutex_);
    Pages* best = nullptr;
    for (Pages& run : runs_) {
      if (!run || run.bytes_ < bytes || run.bytes_ > 2 * bytes) continue;
      if (!best || run.bytes_ < best->bytes_) best = &run;
    }
    if (!best) return {};
    held_ -= best->bytes_;
    return std::move(*best);
  }

  // False when the run is not wanted. A new run pushes out old ones, in the order of their coming.
  bool Keep(uint8_t* base, size_t bytes) {
    if (bytes > kCacheBytes / 2) return false;
    const std::lock_guard lock(mutex_);
    while (held_ + bytes > kCacheBytes || runs_[next_])
      Drop();
    runs_[next_].base_ = base;
    runs_[next_].bytes_ = bytes;
    held_ += bytes;
    next_ = (next_ + 1) % kCacheRuns;
    return true;
  }

  void Clear() {
    const std::lock_guard lock(mutex_);
    while (held_)
      Drop();
  }

 private:
  // Unmaps the oldest run and makes its place the next to be filled when all places are taken.
  void Drop() {
    for (size_t i = 0; i < kCacheRuns; ++i) {
      Pages& oldest = runs_[(next_ + i) % kCacheRuns];
      if (!oldest) continue;
      held_ -= oldest.bytes_;
      munmap(std::exchange(oldest.base_, nullptr), oldest.bytes_);
      return;
    }
  }

  std::mutex mutex_;
  std::array<Pages, kCacheRuns> runs_;
  size_t next_ = 0;
  size_t held_ = 0;
};

Pages Pages::InMemory(size_t bytes) {
  const bool huge = bytes >= kHugeFrom;
  const size_t length = RoundUp(bytes, huge ? kHugePage : kPage);
  if (Pages cached = PageCache::Get().Take(length)) {
    std::memset(cached.base_, 0, RoundUp(bytes, kPage));
    return cached;
  }
  uint8_t* base = huge ? MapHugePages(length) : MapMemory(length, MAP_POPULATE);
  return base ? Pages(base, length, Backing::kMemory) : Pages();
}

Pages Pages::InFile(size_t bytes) {
  const size_t length = RoundUp(bytes, kPage);
  const int file = OpenUnlinkedTempFile();
  if (file < 0) return {};
  void* at = MAP_FAILED;
  // A full disk must be a failure here and no signal at a later write.
  if (ExtendFile(file, 0, static_cast<int64_t>(length))) {
    at = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  }
  close(file);
  return at == MAP_FAILED ? Pages() : Pages(static_cast<uint8_t*>(at), length, Backing::kFile);
}

Pages Pages::Zeroed(uint64_t bytes) {
  if (bytes == 0 || bytes > SIZE_MAX / 4) return {};
  const auto length = static_cast<size_t>(bytes);
  // Twice the length: an operation that replaces a picture holds two of them.
  if (!FitsInMemory(2 * bytes)) {
    if (Pages pages = InFile(length + kGuardBytes)) return pages.EndAt(length);
    if (!FitsInMemory(bytes)) return {};
  }
  return InMemory(length + kGuardBytes).EndAt(length);
}

Pages Pages::ZeroedOrThrow(uint64_t bytes) {
  Pages pages = Zeroed(bytes);
  if (!pages) throw std::bad_alloc();
  return pages;
}

Pages::Pages(Pages&& other) noexcept
    : base_(std::exchange(other.base_, nullptr)), bytes_(other.bytes_), backing_(other.backing_) {}

Pages& Pages::operator=(Pages&& other) noexcept {
  std::swap(base_, other.base_);
  std::swap(bytes_, other.bytes_);
  std::swap(backing_, other.backing_);
  return *this;
}

Pages Pages::EndAt(size_t bytes) {
  if (base_ && kGuardBytes) ForbidBytes(base_ + bytes, bytes_ - bytes);
  return std::move(*this);
}

Pages::~Pages() {
  if (!base_) return;
  AllowBytes(base_, bytes_);
  const bool reusable = backing_ == Backing::kMemory && kGuardBytes == 0;
  if (reusable && PageCache::Get().Keep(base_, bytes_)) return;
  munmap(base_, bytes_);
}

void ReleaseCachedPages() { PageCache::Get().Clear(); }

}  // namespace headless
