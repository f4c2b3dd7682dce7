// How a region follows its picture through geometry. Without a region these do nothing and return
// OK.
#ifndef VNCORE_REGION_REGION_MOTION_H
#define VNCORE_REGION_REGION_MOTION_H

#include <vncore/vncore.h>

namespace vn {

// Turn the region over within the bitmap's Height, or within its Width. OK or ERR_NO_BITMAP.
VnStatus FlipRegion(BitmapHandle* bitmap);
VnStatus ReverseRegion(BitmapHandle* bitmap);

// Scales the region to a new size, before the record's own dimensions change: they are the
// denominators. Rectangles without a pixel left go. The block stays where it is, because the
// record of the scaled bitmap names it too. OK or ERR_NO_BITMAP.
VnStatus ScaleRegion(BitmapHandle* bitmap, int32_t width, int32_t height);

// Gives `destination` a copy of the source's region, moved, and cut to it where it leaves it. The
// Region of the destination is overwritten, not freed: it is new, and shares at most.
// OK, ERR_INVALID_PARAMETER for a null record, or ERR_NO_MEMORY.
VnStatus CopyRegion(BitmapHandle* destination, const BitmapHandle* source, int32_t dx, int32_t dy);

// Turns the region by `angle`, in hundredths of a degree, when the bitmap has its new dimensions
// already and the region is still that of a picture of the old ones. Every pixel of the new picture
// is selected when the one that it comes from was.
// OK, ERR_NO_BITMAP, or ERR_NO_MEMORY: the region is then as it was.
VnStatus RotateRegion(BitmapHandle* bitmap, int32_t oldWidth, int32_t oldHeight, int32_t angle);

}  // namespace vn

#endif
