// Owners for platform objects that live within a call.
#ifndef VNCORE_KERNEL_PLATFORM_OBJECTS_H
#define VNCORE_KERNEL_PLATFORM_OBJECTS_H

#include <utility>

#include "platform/win32.h"

namespace vn {

// Deletes a GDI object: OwnedObject<HPALETTE>, OwnedObject<HRGN>, OwnedObject<HBITMAP>.
template <class Handle>
class OwnedObject {
 public:
  OwnedObject() = default;
  explicit OwnedObject(Handle handle) : handle_(handle) {}
  OwnedObject(OwnedObject&& other) noexcept : handle_(other.Release()) {}
  OwnedObject& operator=(OwnedObject&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OwnedObject() {
    if (handle_) DeleteObject(handle_);
  }

  explicit operator bool() const { return handle_ != Handle{}; }
  Handle get() const { return handle_; }
  Handle Release() { return std::exchange(handle_, Handle{}); }

 private:
  Handle handle_{};
};

// The screen's device context.
class ScreenDC {
 public:
  ScreenDC() : context_(GetDC(nullptr)) {}
  ScreenDC(const ScreenDC&) = delete;
  ScreenDC& operator=(const ScreenDC&) = delete;
  ~ScreenDC() {
    if (context_) ReleaseDC(nullptr, context_);
  }
  HDC get() const { return context_; }

 private:
  HDC context_;
};

}  // namespace vn

#endif
