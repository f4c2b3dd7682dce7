// A bitmap that the tool owns.
#ifndef VNCORE_TOOLS_BITMAP_H
#define VNCORE_TOOLS_BITMAP_H

#include "kernel/vncore.h"

namespace vn::tool {

class Bitmap {
 public:
  Bitmap() = default;
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;
  ~Bitmap() { Vn_FreeBitmap(&handle_); }

  BitmapHandle* get() { return &handle_; }
  BitmapHandle* operator->() { return &handle_; }
  operator BitmapHandle*() { return &handle_; }

 private:
  BitmapHandle handle_{};
};

// The storage row of picture line `line` (0 is the top), or the other way round.
inline int32_t StorageRow(const BitmapHandle& bitmap, int32_t line) {
  return bitmap.ViewOrigin == VIEW_BOTTOM_FIRST ? bitmap.Height - 1 - line : line;
}

}  // namespace vn::tool

#endif
