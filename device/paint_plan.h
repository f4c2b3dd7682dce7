// The plan of a paint: which part of the bitmap goes where on the device, and by which renderer.
#ifndef VNCORE_DEVICE_PAINT_PLAN_H
#define VNCORE_DEVICE_PAINT_PLAN_H

#include "kernel/vncore.h"

namespace vn {

// Vn_PaintDC without its checks, for the library's own paints.
VnStatus PaintBitmap(HDC hDC, BitmapHandle* bitmap, const RECT* source, const RECT* sourceClip,
                     const RECT* destination, const RECT* destinationClip, uint32_t rasterOp);

// True when the two need no scaling. A destination with its bottom above its top counts by
// magnitude.
bool SameSize(const RECT& source, const RECT& destination);

}  // namespace vn

#endif
