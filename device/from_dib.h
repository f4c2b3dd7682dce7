// DIBs to bitmaps, inside the library.
#ifndef VNCORE_DEVICE_FROM_DIB_H
#define VNCORE_DEVICE_FROM_DIB_H

#include <vncore/vncore.h>
#include "device/dib_layout.h"

namespace vn {

// Copies a DIB that somebody else owns into `bitmap`, as Vn_ConvertFromDIB does, with the pixels
// behind the colour table that its header announces. Returns ERR_NO_BITMAP for a null handle,
// ERR_UNSUPPORTED for a block that is shorter than its header says, or a code of that function.
VnStatus GlobalDibToBitmap(BitmapHandle* bitmap, HGLOBAL dib);

// What a bitmap whose rows have come from a DIB takes from its head: up to 8 bits the colours, of
// which all 256 are given, and the resolution.
void TakeDibHead(BitmapHandle* bitmap, const RGBQUAD* colors, DibResolution resolution);

}  // namespace vn

#endif
