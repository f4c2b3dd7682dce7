// The table of GDI objects, and the calls that take an object of any type.
#include "platform/headless/objects/objects.h"

#include <utility>
#include <vector>

#include "platform/headless/base/faults.h"

namespace headless {

// Slots are used again, the one that rested longest first, with another generation. A handle is
// (generation, slot, 4), generation on top: never null, never a small number (SelectObject also
// answers with those), never -1.
class ObjectTable {
 public:
  static ObjectTable& Get() {
    static auto* table = new ObjectTable;  // outlives every static object that may still call
    return *table;
  }

  HGDIOBJ Add(std::unique_ptr<Object> object, bool stock) {
    size_t slot = longest_;
    if (resting_ < kLeastResting && slots_.size() < kSlotLimit) {
      slot = slots_.size();
      slots_.emplace_back();
    } else if (resting_ == 0) {
      return nullptr;
    } else {
      longest_ = slots_[slot].next;
      --resting_;
    }
    object->stock_ = stock;
    if (!stock) ++CounterOf(*object);
    slots_[slot].object = std::move(object);
    return HandleOf(slot);
  }

  Object* Find(HGDIOBJ handle) {
    const size_t slot = SlotOf(handle);
    return slot < slots_.size() && HandleOf(slot) == handle ? slots_[slot].object.get() : nullptr;
  }

  bool Remove(HGDIOBJ handle) {
    Object* object = Find(handle);
    if (!object) return false;
    if (object->stock_) return true;
    if (object->holds_ > 0) {
      object->deletePending_ = true;
      return true;
    }
    const size_t slot = SlotOf(handle);
    --CounterOf(*object);
    // Out of the table first: a context that dies lets its own objects go.
    const std::unique_ptr<Object> dying = std::move(slots_[slot].object);
    Rest(slot);
    return true;
  }

  void Hold(HGDIOBJ handle) {
    if (Object* object = Find(handle)) ++object->holds_;
  }
  void LetGo(HGDIOBJ handle) {
    Object* object = Find(handle);
    if (object && object->holds_ > 0 && --object->holds_ == 0 && object->deletePending_) {
      Remove(handle);
    }
  }

  std::vector<HGDIOBJ> HandlesOf(DWORD type) const {
    std::vector<HGDIOBJ> handles;
    for (size_t slot = 0; slot < slots_.size(); ++slot) {
      const Object* object = slots_[slot].object.get();
      if (object && object->type_ == type) handles.push_back(HandleOf(slot));
    }
    return handles;
  }

  uint32_t objects() const { return objects_; }
  uint32_t contexts() const { return contexts_; }

 private:
  // Where generations are few, slots rest in a crowd, so that a handle is long dead when its value
  // comes again.
  static constexpr bool kNarrow = sizeof(HGDIOBJ) == 4;
  static constexpr unsigned kSlotBits = kNarrow ? 18 : 20;
  static constexpr size_t kSlotLimit = (size_t{1} << kSlotBits) - 2;
  static constexpr size_t kLeastResting = kNarrow ? 1024 : 1;
  static constexpr uintptr_t kMostGenerations = UINTPTR_MAX >> (kSlotBits + 4);
  struct Slot {
    std::unique_ptr<Object> object;
    uintptr_t generation = 1;
    size_t next = 0;  // of those that rest
  };

  void Rest(size_t slot) {
    uintptr_t& generation = slots_[slot].generation;
    generation = generation == kMostGenerations ? 1 : generation + 1;
    (resting_ ? slots_[latest_].next : longest_) = slot;
    latest_ = slot;
    ++resting_;
  }

  HGDIOBJ HandleOf(size_t slot) const {
    return reinterpret_cast<HGDIOBJ>(
        (slots_[slot].generation << kSlotBits | static_cast<uintptr_t>(slot)) << 4 | 4);
  }
  static size_t SlotOf(HGDIOBJ handle) {
    return reinterpret_cast<uintptr_t>(handle) >> 4 & ((size_t{1} << kSlotBits) - 1);
  }
  uint32_t& CounterOf(const Object& object) {
    return object.type_ == OBJ_DC || object.type_ == OBJ_MEMDC ? contexts_ : objects_;
  }

  std::vector<Slot> slots_;
  size_t resting_ = 0, longest_ = 0, latest_ = 0;  // a list through the slots that rest
  uint32_t objects_ = 0;
  uint32_t contexts_ = 0;
};

HGDIOBJ AddObject(std::unique_ptr<Object> object) {
  if (FailsNow(HEADLESS_OBJECT)) return nullptr;
  return ObjectTable::Get().Add(std::move(object), false);
}

HGDIOBJ AddStockObject(std::unique_ptr<Object> object) {
  const HGDIOBJ handle = ObjectTable::Get().Add(std::move(object), true);
  if (!handle) throw std::bad_alloc();
  return handle;
}

Object* FindObject(HGDIOBJ handle) { return ObjectTable::Get().Find(handle); }
bool RemoveObject(HGDIOBJ handle) { return ObjectTable::Get().Remove(handle); }
void HoldObject(HGDIOBJ handle) { ObjectTable::Get().Hold(handle); }
void LetGoObject(HGDIOBJ handle) { ObjectTable::Get().LetGo(handle); }
std::vector<HGDIOBJ> HandlesOf(DWORD type) { return ObjectTable::Get().HandlesOf(type); }

void CountLiveObjects(uint32_t* objects, uint32_t* contexts) {
  const std::lock_guard lock(GdiMutex());
  *objects = ObjectTable::Get().objects();
  *contexts = ObjectTable::Get().contexts();
}

std::recursive_mutex& GdiMutex() {
  static auto* mutex = new std::recursive_mutex;
  return *mutex;
}

}  // namespace headless

using namespace headless;

BOOL DeleteObject(HGDIOBJ object) {
  return Enter<BOOL>(FALSE, [&] { return RemoveObject(object); });
}

DWORD GetObjectType(HGDIOBJ object) {
  return Enter<DWORD>(0, [&] {
    const Object* found = FindObject(object);
    return found ? found->type() : 0;
  });
}

int GetObjectA(HANDLE object, int bytes, LPVOID result) {
  return Enter<int>(0, [&] {
    const Object* found = FindObject(object);
    return found ? found->Describe(bytes, result) : 0;
  });
}
