// Shapes as a bitmap's region: each is made as a platform region, and installed.
#include <vncore/vncore.h>
#include "kernel/platform_objects.h"

namespace {

VnStatus Install(BitmapHandle* bitmap, const RegionTransform* transform, HRGN shape,
                 uint32_t combine) {
  const vn::OwnedObject<HRGN> owned(shape);
  return shape ? Vn_SetBitmapRgnHandle(bitmap, transform, shape, combine) : ERR_NO_MEMORY;
}

}  // namespace

VnStatus VN_CALL Vn_SetBitmapRgnRect(BitmapHandle* bitmap, const RegionTransform* transform,
                                     const RECT* rect, uint32_t combine) {
  if (!rect) return ERR_INVALID_PARAMETER;
  return Install(bitmap, transform, CreateRectRgnIndirect(rect), combine);
}

VnStatus VN_CALL Vn_SetBitmapRgnEllipse(BitmapHandle* bitmap, const RegionTransform* transform,
                                        const RECT* box, uint32_t combine) {
  if (!box) return ERR_INVALID_PARAMETER;
  return Install(bitmap, transform, CreateEllipticRgnIndirect(box), combine);
}

VnStatus VN_CALL Vn_SetBitmapRgnPolygon(BitmapHandle* bitmap, const RegionTransform* transform,
                                        const POINT* points, int32_t count, uint32_t fillRule,
                                        uint32_t combine) {
  if (!points || fillRule > REGION_FILL_ALTERNATE) return ERR_INVALID_PARAMETER;
  const int platformRule = fillRule == REGION_FILL_WINDING ? WINDING : ALTERNATE;
  return Install(bitmap, transform, CreatePolygonRgn(points, count, platformRule), combine);
}

VnStatus VN_CALL Vn_SetBitmapRgnRoundRect(BitmapHandle* bitmap, const RegionTransform* transform,
                                          const RECT* rect, int32_t cornerWidth,
                                          int32_t cornerHeight, uint32_t combine) {
  if (!rect) return ERR_INVALID_PARAMETER;
  const HRGN shape = CreateRoundRectRgn(rect->left, rect->top, rect->right, rect->bottom,
                                        cornerWidth, cornerHeight);
  return Install(bitmap, transform, shape, combine);
}
