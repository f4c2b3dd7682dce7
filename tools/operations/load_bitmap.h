// From a picture's rows to a bitmap.
#ifndef VNCORE_TOOLS_LOAD_BITMAP_H
#define VNCORE_TOOLS_LOAD_BITMAP_H

#include "tools/formats/picture.h"
#include "tools/operations/bitmap.h"

namespace vn::tool {

// Fills the empty record `bitmap` with `source`, row by row, in storage of kind `storage` (a
// STORAGE_ value), and turns it upright where the picture says how it is held. Reports to the
// thread's status callback. Throws Failure or Interruption.
void LoadBitmap(PictureSource& source, int32_t storage, Bitmap& bitmap);

}  // namespace vn::tool

#endif
