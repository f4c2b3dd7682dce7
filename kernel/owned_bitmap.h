// A bitmap record with an owner, for callers of the library in C++: tools, tests, benchmarks.
#ifndef VNCORE_KERNEL_OWNED_BITMAP_H
#define VNCORE_KERNEL_OWNED_BITMAP_H

#include <vncore/vncore.h>

namespace vn {

// Starts without storage, and frees what it holds in the end. Passes for the record's pointer.
class OwnedBitmap {
 public:
  OwnedBitmap() = default;
  OwnedBitmap(const OwnedBitmap&) = delete;
  OwnedBitmap& operator=(const OwnedBitmap&) = delete;
  ~OwnedBitmap() { Vn_FreeBitmap(&handle_); }

  BitmapHandle* get() { return &handle_; }
  BitmapHandle* operator->() { return &handle_; }
  operator BitmapHandle*() { return &handle_; }

 private:
  BitmapHandle handle_{};
};

}  // namespace vn

#endif
