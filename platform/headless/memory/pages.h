// Where the memory of file mappings comes from.
#ifndef VNCORE_PLATFORM_HEADLESS_PAGES_H
#define VNCORE_PLATFORM_HEADLESS_PAGES_H

#include <cstddef>
#include <cstdint>

namespace headless {

// A run of whole pages. Move-only; gives them back when it dies.
class Pages {
 public:
  Pages() = default;
  // At least `bytes` bytes, all zero. Empty on failure.
  static Pages Zeroed(uint64_t bytes);
  // The same; throws on failure.
  static Pages ZeroedOrThrow(uint64_t bytes);
  Pages(Pages&& other) noexcept;
  Pages& operator=(Pages&& other) noexcept;
  ~Pages();

  explicit operator bool() const { return base_ != nullptr; }
  uint8_t* base() const { return base_; }

 private:
  enum class Backing : uint8_t { kMemory, kFile };
  Pages(uint8_t* base, size_t bytes, Backing backing)
      : base_(base), bytes_(bytes), backing_(backing) {}
  static Pages InMemory(size_t bytes);
  static Pages InFile(size_t bytes);
  // The same run, of which a sanitizer build sees the first `bytes` alone.
  Pages EndAt(size_t bytes);
  friend class PageCache;

  uint8_t* base_ = nullptr;
  size_t bytes_ = 0;  // whole length of the run
  Backing backing_ = Backing::kMemory;
};

// Unmaps the released runs that are kept for later ones.
void ReleaseCachedPages();

}  // namespace headless

#endif
