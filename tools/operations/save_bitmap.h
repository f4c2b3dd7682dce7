// From a bitmap to a picture's rows.
#ifndef VNCORE_TOOLS_SAVE_BITMAP_H
#define VNCORE_TOOLS_SAVE_BITMAP_H

#include "tools/formats/picture.h"
#include "tools/operations/bitmap.h"

namespace vn::tool {

// What a picture of the bitmap is: its size, its depth (24 for 16 bits and more), its palette.
PictureInfo InfoOf(BitmapHandle* bitmap);

// Writes all lines from the top down and reports to the thread's status callback. The sink is not
// finished. Throws Failure or Interruption.
void SaveBitmap(BitmapHandle* bitmap, PictureSink& sink);

}  // namespace vn::tool

#endif
