// The table of GDI objects: typed handles with generations, so that a dead or foreign handle is
// known for what it is. A handle's value is never given out twice, in a 32-bit process not before a
// million others have died.
#ifndef VNCORE_PLATFORM_HEADLESS_OBJECTS_H
#define VNCORE_PLATFORM_HEADLESS_OBJECTS_H

#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <typeinfo>
#include <utility>
#include <vector>

#include <vncore/platform/win32.h>

namespace headless {

class Context;

// What stands behind a handle. The classes of the table derive from it; `type` is an OBJ_ value.
class Object {
 public:
  explicit Object(DWORD type) : type_(type) {}
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  DWORD type() const { return type_; }

  // GetObjectA: writes at most `bytes` bytes to `result`, or nothing when `result` is null; the
  // number of bytes written or needed, 0 for an error.
  virtual int Describe(int bytes, void* result) const {
    (void)bytes, (void)result;
    return 0;
  }
  // SelectObject: puts the object, whose handle is `self`, into the context. The handle that was
  // selected before (for a region the kind of the new clip), null for a failure.
  virtual HGDIOBJ SelectInto(Context& context, HGDIOBJ self) {
    (void)context, (void)self;
    return nullptr;
  }

 private:
  friend class ObjectTable;
  const DWORD type_;
  bool stock_ = false;          // never deleted, never counted
  bool deletePending_ = false;  // deleted while held: dies when the last context lets go
  uint32_t holds_ = 0;          // contexts and saved states in which it is selected
};

// Enters an object and gives its handle. Null when memory fails or a failure was asked for
// (HEADLESS_OBJECT); the object is gone then.
HGDIOBJ AddObject(std::unique_ptr<Object> object);
// The same for an object that lives with the process. Never fails by request; throws when memory
// fails.
HGDIOBJ AddStockObject(std::unique_ptr<Object> object);

// Null for a handle that is dead, foreign or of another type.
Object* FindObject(HGDIOBJ handle);
template <class Type>
Type* Find(HGDIOBJ handle) {
  Object* object = FindObject(handle);
  // Most handles are what they are taken for, and then there is no hierarchy to search.
  if (object && typeid(*object) == typeid(Type)) return static_cast<Type*>(object);
  return dynamic_cast<Type*>(object);
}

// Takes an object out of the table and destroys it; one that is held dies when it is let go, and
// keeps its handle until then. False for a dead handle. A stock object stays, which is success.
bool RemoveObject(HGDIOBJ handle);

// Selection into a context counts as a hold. Null and dead handles are ignored.
void HoldObject(HGDIOBJ handle);
void LetGoObject(HGDIOBJ handle);

// Handles of all objects of a type, stock ones included.
std::vector<HGDIOBJ> HandlesOf(DWORD type);

// Objects alive, stock ones not counted; device contexts count apart.
void CountLiveObjects(uint32_t* objects, uint32_t* contexts);

// The lock around every call of the GDI half: calls are few and move many pixels each. Recursive,
// because calls are made of calls.
std::recursive_mutex& GdiMutex();

// Runs the body of a platform call under the lock. Exhausted memory is the call's failure, as are
// more elements than a 32-bit process has bytes for.
template <class Result, class Body>
Result Enter(Result failure, Body body) {
  const std::lock_guard lock(GdiMutex());
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return failure;
  } catch (const std::length_error&) {
    return failure;
  }
}

// Takes ownership of a new object and gives its typed handle: AddNew<HRGN>(std::make_unique<...>).
template <class Handle, class Type>
Handle AddNew(std::unique_ptr<Type> object) {
  return static_cast<Handle>(AddObject(std::move(object)));
}

}  // namespace headless

#endif
