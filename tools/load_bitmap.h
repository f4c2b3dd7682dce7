// From a picture's rows to a bitmap.
#ifndef VNCORE_TOOLS_LOAD_BITMAP_H
#define VNCORE_TOOLS_LOAD_BITMAP_H

#include "tools/bitmap.h"
#include "tools/picture.h"

namespace vn::tool {

// Fills the empty record `bitmap` with `source`, row by row, in storage of kind `storage` (a
// STORAGE_ value). Reports to the thread's status callback. Throws Failure or Interruption.
void LoadBitmap(PictureSource& source, int32_t storage, Bitmap& bitmap);

}  // namespace vn::tool

#endif
