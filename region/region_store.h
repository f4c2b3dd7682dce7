// Replacing a bitmap's region.
#ifndef VNCORE_REGION_REGION_STORE_H
#define VNCORE_REGION_REGION_STORE_H

#include <vncore/vncore.h>

namespace vn {

// Frees the bitmap's present region and gives it `record`, or none.
void AttachRegion(BitmapHandle* bitmap, RegionRecord* record);

// Gives the bitmap the pixels of a platform region, mapped into it and cut to it; null removes the
// region, whatever the transform. Returns OK, ERR_NO_BITMAP, ERR_INVALID_PARAMETER or
// ERR_NO_MEMORY; the present region stands on failure.
VnStatus InstallRegion(BitmapHandle* bitmap, const RegionTransform* transform, HRGN region);

// Combines `record`, which lies within the bitmap and is taken over, with the present region. Any
// REGION_COMBINE_ value but REPLACE_INVERTED. Returns OK or ERR_NO_MEMORY; what a failure leaves is
// as after Vn_SetBitmapRgnHandle.
VnStatus InstallRecord(BitmapHandle* bitmap, RegionRecord* record, uint32_t combine);

}  // namespace vn

#endif
