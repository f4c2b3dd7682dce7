// Global memory with an owner, and its address for a stretch of work.
#ifndef VNCORE_DEVICE_GLOBAL_MEMORY_H
#define VNCORE_DEVICE_GLOBAL_MEMORY_H

#include <cstdint>
#include <utility>

#include <vncore/platform/win32.h>

namespace vn {

// A block that is freed unless it is given away. Test it.
class OwnedGlobal {
 public:
  OwnedGlobal() = default;
  explicit OwnedGlobal(HGLOBAL memory) : memory_(memory) {}
  // A new block; empty as well for a size beyond 32 bits, which no DIB can tell. Contents are not
  // cleared.
  static OwnedGlobal OfSize(uint64_t bytes) {
    if (bytes > UINT32_MAX) return {};
    return OwnedGlobal(GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, static_cast<SIZE_T>(bytes)));
  }
  OwnedGlobal(OwnedGlobal&& other) noexcept : memory_(other.Release()) {}
  OwnedGlobal& operator=(OwnedGlobal&& other) noexcept {
    std::swap(memory_, other.memory_);
    return *this;
  }
  ~OwnedGlobal() {
    if (memory_) GlobalFree(memory_);
  }

  explicit operator bool() const { return memory_ != nullptr; }
  HGLOBAL get() const { return memory_; }
  HGLOBAL Release() { return std::exchange(memory_, nullptr); }

 private:
  HGLOBAL memory_ = nullptr;
};

class GlobalAddress {
 public:
  explicit GlobalAddress(HGLOBAL memory)
      : memory_(memory), at_(static_cast<uint8_t*>(memory ? GlobalLock(memory) : nullptr)) {}
  GlobalAddress(const GlobalAddress&) = delete;
  GlobalAddress& operator=(const GlobalAddress&) = delete;
  ~GlobalAddress() { Unlock(); }

  explicit operator bool() const { return at_ != nullptr; }
  uint8_t* get() const { return at_; }
  void Unlock() {
    if (std::exchange(at_, nullptr)) GlobalUnlock(memory_);
  }

 private:
  HGLOBAL memory_;
  uint8_t* at_;
};

}  // namespace vn

#endif
