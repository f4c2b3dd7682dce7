// Scratch memory of one call.
#ifndef VNCORE_KERNEL_SCRATCH_BUFFER_H
#define VNCORE_KERNEL_SCRATCH_BUFFER_H

#include <cstddef>
#include <limits>
#include <type_traits>
#include <utility>

#include <vncore/vn_system.h>

namespace vn {

// What rows are read into is cleared: a row that cannot be read shows as wrong pixels, which must not
// be what another call has left in memory.
enum class Fill : uint32_t { kNone = 0, kZero = 1 };

// Owns `count` elements from the system layer. Test it: it is empty when memory failed.
template <class T>
class ScratchBuffer {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

 public:
  ScratchBuffer() = default;
  explicit ScratchBuffer(std::size_t count, Fill fill = Fill::kNone) {
    constexpr std::size_t kMost = std::numeric_limits<uint32_t>::max() / sizeof(T);
    if (count > kMost) return;
    // The platform gives no address to a block of 0 bytes; an empty row is no failure.
    const auto bytes = static_cast<uint32_t>(count ? count * sizeof(T) : 1);
    data_ = static_cast<T*>(Vn_OsAllocInit(bytes, static_cast<uint32_t>(fill)));
  }
  ScratchBuffer(ScratchBuffer&& other) noexcept : data_(std::exchange(other.data_, nullptr)) {}
  ScratchBuffer& operator=(ScratchBuffer&& other) noexcept {
    std::swap(data_, other.data_);
    return *this;
  }
  ~ScratchBuffer() {
    if (data_) Vn_OsFree(data_);
  }

  explicit operator bool() const { return data_ != nullptr; }
  T* data() const { return data_; }
  T& operator[](std::size_t i) const { return data_[i]; }
  T* operator->() const { return data_; }
  // Gives the block away; the new owner frees it with Vn_OsFree.
  T* Release() { return std::exchange(data_, nullptr); }

 private:
  T* data_ = nullptr;
};

}  // namespace vn

#endif
