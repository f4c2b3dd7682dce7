// Owners for platform objects that live within a call.
#ifndef VNCORE_KERNEL_PLATFORM_OBJECTS_H
#define VNCORE_KERNEL_PLATFORM_OBJECTS_H

#include <utility>

#include <vncore/platform/win32.h>

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

// The device context of a window, null being the screen.
class WindowDC {
 public:
  explicit WindowDC(HWND window) : window_(window), context_(GetDC(window)) {}
  WindowDC(const WindowDC&) = delete;
  WindowDC& operator=(const WindowDC&) = delete;
  ~WindowDC() {
    if (context_) ReleaseDC(window_, context_);
  }
  HDC get() const { return context_; }

 private:
  HWND window_;
  HDC context_;
};

class ScreenDC : public WindowDC {
 public:
  ScreenDC() : WindowDC(nullptr) {}
};

}  // namespace vn

#endif
