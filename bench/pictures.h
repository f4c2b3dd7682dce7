// Bitmaps and devices for benchmarks.
#ifndef VNCORE_BENCH_PICTURES_H
#define VNCORE_BENCH_PICTURES_H

#include <cstdint>
#include <cstdlib>
#include <vector>

#include <vncore/platform/headless/headless.h>
#include <vncore/vncore.h>
#include "kernel/guards.h"

namespace vn::bench {

// A bitmap with slopes and some noise, the like of a photograph.
class Picture {
 public:
  Picture(uint32_t width, uint32_t height, int32_t bits, int32_t storage = STORAGE_AUTO) {
    if (Vn_CreateBitmap(&handle_, storage, width, height, bits, ORDER_BGR, nullptr,
                        VIEW_BOTTOM_FIRST) != OK) {
      std::abort();
    }
    const BitmapLock lock(&handle_);
    std::vector<uint8_t> row(handle_.BytesPerLine);
    uint32_t noise = 1;
    for (uint32_t y = 0; y < height; ++y) {
      for (size_t x = 0; x < row.size(); ++x) {
        noise = noise * 1664525 + 1013904223;
        row[x] = static_cast<uint8_t>((x * 3 + y * (x % 3 + 1) * 2 + (noise >> 24) / 8) / 6);
      }
      Vn_PutBitmapRow(&handle_, row.data(), y, handle_.BytesPerLine);
    }
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() { Vn_FreeBitmap(&handle_); }

  BitmapHandle* get() { return &handle_; }
  BitmapHandle* operator->() { return &handle_; }
  operator BitmapHandle*() { return &handle_; }

 private:
  BitmapHandle handle_{};
};

// The library attached as on Win32s, where storage is global memory or a temporary file.
class Win32sScope {
 public:
  explicit Win32sScope(bool win32s) : win32s_(win32s) {
    if (win32s_) Attach(HEADLESS_VERSION_WIN32S);
  }
  Win32sScope(const Win32sScope&) = delete;
  Win32sScope& operator=(const Win32sScope&) = delete;
  ~Win32sScope() {
    if (win32s_) Attach(HEADLESS_VERSION_WIN32);
  }

 private:
  static void Attach(uint32_t version) {
    Headless_SetVersion(version);
    if (!Headless_Restart()) std::abort();
  }
  bool win32s_;
};

// `reserved` colours of a palette of 8 bits belong to the system.
inline void SetScreen(int32_t width, int32_t height, int32_t bits, int32_t reserved = 20) {
  const Headless_Display display = {width, height, bits, bits == 8, reserved, DT_RASDISPLAY, 96};
  if (!Headless_SetDisplay(&display)) std::abort();
}

}  // namespace vn::bench

#endif
