// Device bitmaps while the library works on them.
#ifndef VNCORE_DEVICE_DEVICE_BITMAP_H
#define VNCORE_DEVICE_DEVICE_BITMAP_H

#include <utility>

#include <vncore/platform/win32.h>

namespace vn {

// A memory context that is compatible with another one. Test it.
class MemoryDC {
 public:
  explicit MemoryDC(HDC like) : context_(CreateCompatibleDC(like)) {}
  MemoryDC(const MemoryDC&) = delete;
  MemoryDC& operator=(const MemoryDC&) = delete;
  ~MemoryDC() {
    if (context_) DeleteDC(context_);
  }
  explicit operator bool() const { return context_ != nullptr; }
  HDC get() const { return context_; }
  HDC Release() { return std::exchange(context_, nullptr); }

 private:
  HDC context_;
};

// An object in a context for a stretch of work. The object must outlive it, the context as well.
class SelectedObject {
 public:
  SelectedObject(HDC context, HGDIOBJ object)
      : context_(context), before_(SelectObject(context, object)) {}
  SelectedObject(const SelectedObject&) = delete;
  SelectedObject& operator=(const SelectedObject&) = delete;
  ~SelectedObject() {
    if (before_) SelectObject(context_, before_);
  }

 private:
  HDC context_;
  HGDIOBJ before_;
};

// A palette realised in a context for a stretch of work; null for none. The one before is selected
// again but not realised: that would take the colours from under the object that was painted.
class SelectedPalette {
 public:
  SelectedPalette(HDC context, HPALETTE palette)
      : context_(context), before_(palette ? SelectPalette(context, palette, FALSE) : nullptr) {
    if (palette) RealizePalette(context);
  }
  SelectedPalette(const SelectedPalette&) = delete;
  SelectedPalette& operator=(const SelectedPalette&) = delete;
  ~SelectedPalette() {
    if (before_) SelectPalette(context_, before_, FALSE);
  }

 private:
  HDC context_;
  HPALETTE before_;
};

}  // namespace vn

#endif
