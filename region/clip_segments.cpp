// How much of a bitmap its region selects, and which runs of a row.
#include <vncore/vncore.h>
#include "region/band_order.h"

VnStatus VN_CALL Vn_GetBitmapRgnArea(const BitmapHandle* bitmap, uint32_t* area) {
  if (!bitmap) return ERR_NO_BITMAP;
  const auto pixels = [](int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return (static_cast<uint32_t>(bottom) - static_cast<uint32_t>(top)) *
           (static_cast<uint32_t>(right) - static_cast<uint32_t>(left));
  };
  uint32_t sum = 0;
  if (bitmap->Region) {
    for (const RECT& rect : *bitmap->Region) {
      sum += pixels(rect.left, rect.top, rect.right, rect.bottom);
    }
  } else {
    sum = pixels(0, 0, bitmap->Width, bitmap->Height);
  }
  *area = sum;
  return OK;
}

VnStatus VN_CALL Vn_GetBitmapClipSegmentsMax(const BitmapHandle* bitmap, int32_t* maximum) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!maximum) return ERR_INVALID_PARAMETER;
  *maximum = 2;
  if (bitmap->Region) {
    const RECT& bounds = bitmap->Region->header.rcBound;
    const uint32_t width =
        static_cast<uint32_t>(bounds.right) - static_cast<uint32_t>(bounds.left) + 1;
    *maximum = static_cast<int32_t>(width) / 2;
  }
  return OK;
}

VnStatus VN_CALL Vn_GetBitmapClipSegments(const BitmapHandle* bitmap, int32_t row,
                                          int32_t* segments, int32_t* count) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!count) return ERR_INVALID_PARAMETER;
  if (!bitmap->Region) {
    segments[0] = 0;
    segments[1] = bitmap->Width;
    *count = 2;
    return OK;
  }
  const RECT& bounds = bitmap->Region->header.rcBound;
  *count = 0;
  if (row < bounds.top || row >= bounds.bottom) return OK;
  const vn::BandOrder order = vn::BandOrderOf(bitmap->Region);
  *count = vn::WriteRuns(order, vn::BandAt(*bitmap->Region, order, row), row, segments);
  return OK;
}
