// A bitmap replaced by a scaled copy of itself.
#include <vncore/vncore.h>
#include "kernel/replacement_bitmap.h"
#include "region/region_motion.h"

VnStatus VN_CALL Vn_SizeBitmap(BitmapHandle* bitmap, int32_t width, int32_t height) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_INVALID_PARAMETER;
  if (bitmap->Width == width && bitmap->Height == height) return OK;
  vn::ReplacementBitmap sized(bitmap);
  VnStatus status = sized.Create(width, height, bitmap->BitsPerPixel);
  if (status != OK) return status;
  status = Vn_ResizeBitmap(bitmap, sized.get());
  // The region is scaled by the quotient of new and old size: the record still has the old one. The
  // region block stays where it is, and both records name it.
  if (status == OK) status = vn::ScaleRegion(bitmap, width, height);
  if (status == OK) {
    sized.Commit();
  } else {
    // Alone among the operations, this one lets palettes and region go with its failed result.
    sized.DropWithShared();
  }
  return status;
}
