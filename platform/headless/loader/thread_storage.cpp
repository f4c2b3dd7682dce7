// TlsAlloc and its family.
//
// A thread's values are plain words without a destructor, so that the last detachments, after all
// C++ objects, can still read them. A slot that was freed and taken again has another generation,
// and a value that a thread stored under an earlier one counts as null.
#include <atomic>
#include <mutex>

#include <vncore/platform/win32.h>
#include "platform/headless/loader/loader.h"

namespace headless {
namespace {

constexpr DWORD kSlots = 64;  // TLS_MINIMUM_AVAILABLE

constinit std::mutex slotsMutex;
constinit std::atomic<uint32_t> generations[kSlots];  // odd while the slot is taken

struct Value {
  void* value;
  uint32_t generation;
};
constinit thread_local Value values[kSlots] = {};

bool IsTaken(uint32_t generation) { return generation & 1; }

// The present generation of a slot in use; 0 for any other number.
uint32_t GenerationOf(DWORD slot) {
  if (slot >= kSlots) return 0;
  const uint32_t generation = generations[slot].load(std::memory_order_acquire);
  return IsTaken(generation) ? generation : 0;
}

}  // namespace
}  // namespace headless

DWORD TlsAlloc(void) {
  using namespace headless;
  const std::lock_guard lock(slotsMutex);
  for (DWORD slot = 0; slot < kSlots; ++slot) {
    if (IsTaken(generations[slot])) continue;
    ++generations[slot];
    return slot;
  }
  return TLS_OUT_OF_INDEXES;
}

BOOL TlsFree(DWORD slot) {
  using namespace headless;
  const std::lock_guard lock(slotsMutex);
  if (!GenerationOf(slot)) return FALSE;
  ++generations[slot];
  return TRUE;
}

LPVOID TlsGetValue(DWORD slot) {
  headless::AttachThreadOnce();
  const uint32_t generation = headless::GenerationOf(slot);
  if (!generation) return nullptr;
  const headless::Value& value = headless::values[slot];
  return value.generation == generation ? value.value : nullptr;
}

BOOL TlsSetValue(DWORD slot, LPVOID value) {
  const uint32_t generation = headless::GenerationOf(slot);
  if (!generation) return FALSE;
  headless::values[slot] = {value, generation};
  return TRUE;
}
