// A bitmap mirrored in place.
#include <vncore/vncore.h>
#include "geometry/mirror_row.h"
#include "kernel/replacement_bitmap.h"
#include "region/region_motion.h"

VnStatus VN_CALL Vn_FlipBitmap(BitmapHandle* bitmap) {
  if (!vn::HoldsItsPixels(bitmap)) return ERR_NO_BITMAP;
  const VnStatus status = vn::WorkOnRows(bitmap, vn::RowPairs::kEnds, vn::ExchangeWork(), 0, 100);
  return status == OK ? vn::FlipRegion(bitmap) : status;
}

VnStatus VN_CALL Vn_ReverseBitmap(BitmapHandle* bitmap) {
  if (!vn::HoldsItsPixels(bitmap)) return ERR_NO_BITMAP;
  const VnStatus status =
      vn::WorkOnRows(bitmap, vn::RowPairs::kSelf, vn::MirrorWork(bitmap->BitsPerPixel), 0, 100);
  return status == OK ? vn::ReverseRegion(bitmap) : status;
}
