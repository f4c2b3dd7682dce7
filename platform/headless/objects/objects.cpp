// The table of GDI objects, and the calls that take an object of any type.
#include "platform/headless/objects/objects.h"

#include <utility>
#include <vector>

#include "platform/headless/base/faults.h"

namespace headless {

// Slots are used again, with another generation. A handle is (generation, slot, 4), generation on
// top: never null, never a small number (SelectObject also answers with those), never -1.
class ObjectTable {
 public:
  static ObjectTable& Get() {
    static auto* table = new ObjectTable;  // outlives every static object that may still call
    return *table;
  }

  HGDIOBJ Add(std::unique_ptr<Object> object, bool stock) {
    if (free_.empty()) {
      if (slots_.size() == kSlotLimit) return nullptr;
      free_.reserve(slots_.size() + 1);  // so that Remove never allocates
      slots_.emplace_back();
      free_.push_back(slots_.size() - 1);
    }
    const size_t slot = free_.back();
    free_.pop_back();
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
    ++slots_[slot].generation;
    free_.push_back(slot);
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
  static constexpr unsigned kSlotBits = 20;
  static constexpr size_t kSlotLimit = (size_t{1} << kSlotBits) - 2;
  struct Slot {
    std::unique_ptr<Object> object;
    uintptr_t generation = 1;
  };

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
  std::vector<size_t> free_;
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
