// Handles of the system half: numbers that are given out once and never again, so that a closed
// handle stays dead.
#ifndef VNCORE_PLATFORM_HEADLESS_HANDLE_TABLE_H
#define VNCORE_PLATFORM_HEADLESS_HANDLE_TABLE_H

#include <cstdint>
#include <unordered_map>
#include <utility>

#include <vncore/platform/win32.h>

namespace headless {

// The low four bits of a handle tell the tables apart. Addresses of blocks and modules have 0
// there.
enum class HandleTag : uintptr_t { kObject = 4, kKernel = 8, kMemory = 12 };

// Values by handle. Not locked: the owner's mutex covers it. Add may throw std::bad_alloc.
template <class Value, HandleTag Tag>
class HandleTable {
 public:
  HANDLE Add(Value value) {
    for (;;) {
      // Only a 32-bit process can ever come round to a number that is still in use.
      const uintptr_t number = ++serial_ << 4 | static_cast<uintptr_t>(Tag);
      const auto handle = reinterpret_cast<HANDLE>(number);
      if (handle == INVALID_HANDLE_VALUE || values_.contains(handle)) continue;
      values_.emplace(handle, std::move(value));
      return handle;
    }
  }

  // Null for a dead or foreign handle.
  Value* Find(HANDLE handle) {
    const auto found = values_.find(handle);
    return found == values_.end() ? nullptr : &found->second;
  }

  bool Remove(HANDLE handle) { return values_.erase(handle) != 0; }

 private:
  std::unordered_map<HANDLE, Value> values_;
  uintptr_t serial_ = 0;
};

}  // namespace headless

#endif
