// What CloseHandle closes: mappings and files, in one table of handles.
#ifndef VNCORE_PLATFORM_HEADLESS_KERNEL_OBJECTS_H
#define VNCORE_PLATFORM_HEADLESS_KERNEL_OBJECTS_H

#include <memory>
#include <new>

#include <vncore/platform/win32.h>

namespace headless {

// An object lives as long as anyone holds it: its handle, a view, a DIB section, or a call that is
// under way on another thread while the handle is closed.
class KernelObject {
 public:
  enum class Kind { kMapping, kFile };
  explicit KernelObject(Kind kind) : kind_(kind) {}
  KernelObject(const KernelObject&) = delete;
  KernelObject& operator=(const KernelObject&) = delete;
  virtual ~KernelObject() = default;
  Kind kind() const { return kind_; }

 private:
  const Kind kind_;
};

// Enters the object and returns its handle. Throws std::bad_alloc.
HANDLE AddKernelObject(std::shared_ptr<KernelObject> object);

// Null for a dead or foreign handle.
std::shared_ptr<KernelObject> FindKernelObject(HANDLE handle);

// Null as well when the handle belongs to another kind of object.
template <class Kind>
std::shared_ptr<Kind> FindKernelObjectOf(HANDLE handle) {
  return std::dynamic_pointer_cast<Kind>(FindKernelObject(handle));
}

// Open handles by kind.
void CountKernelHandles(uint32_t* mappings, uint32_t* files);

// Runs `body`; exhausted memory becomes `failure`, since nothing may be thrown through the
// platform.
template <class Result, class Body>
Result WithoutExceptions(Result failure, Body&& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return failure;
  }
}

}  // namespace headless

#endif
