// A bitmap that the tool owns.
#ifndef VNCORE_TOOLS_BITMAP_H
#define VNCORE_TOOLS_BITMAP_H

#include "kernel/owned_bitmap.h"

namespace vn::tool {

using Bitmap = OwnedBitmap;

// The storage row of picture line `line` (0 is the top), or the other way round.
inline int32_t StorageRow(const BitmapHandle& bitmap, int32_t line) {
  return bitmap.ViewOrigin == VIEW_BOTTOM_FIRST ? bitmap.Height - 1 - line : line;
}

}  // namespace vn::tool

#endif
