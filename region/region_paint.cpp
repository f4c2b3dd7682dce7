// Regions on a device: paints that go through the bitmap's region, and its outline.
#include <vncore/vncore.h>
#include "kernel/platform_objects.h"

namespace vn {
namespace {

// The bitmap's space laid over the destination. Unsigned, as sizes may leave the words.
RegionTransform OntoDestination(const BitmapHandle& bitmap, const RECT& to) {
  const auto size = [](LONG low, LONG high) {
    return static_cast<int32_t>(static_cast<uint32_t>(high) - static_cast<uint32_t>(low));
  };
  return {VIEW_TOP_FIRST,
          size(to.left, to.right),
          bitmap.Width,
          size(to.top, to.bottom),
          bitmap.Height,
          static_cast<int32_t>(to.left),
          static_cast<int32_t>(to.top)};
}

// Calls `paint` with the bitmap's region as the clip of `hDC`.
template <class Paint>
VnStatus PaintThroughRegion(HDC hDC, BitmapHandle* bitmap, const RECT* destination, Paint paint) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!destination) return ERR_INVALID_PARAMETER;
  const RegionTransform transform = OntoDestination(*bitmap, *destination);
  HRGN region = nullptr;
  const VnStatus status = Vn_GetBitmapRgnHandle(bitmap, &transform, &region);
  if (status != OK) return status;
  const int saved = SaveDC(hDC);
  SelectObject(hDC, region);  // the context takes a copy
  DeleteObject(region);
  const VnStatus painted = paint();
  if (saved) RestoreDC(hDC, -1);
  return painted;
}

// Rows of 8 by 8 patterns of diagonal dashes. Pattern n begins at word n, one step further on.
constexpr uint16_t kDashes[16] = {0x000F, 0x001E, 0x003C, 0x0078, 0x00F0, 0x00E1, 0x00C3, 0x0087,
                                  0x000F, 0x001E, 0x003C, 0x0078, 0x00F0, 0x00E1, 0x00C3, 0x0087};
constexpr uint32_t kFrames = 8;

HBRUSH DashBrush(uint32_t frame) {
  const OwnedObject<HBITMAP> pattern(CreateBitmap(8, 8, 1, 1, &kDashes[frame]));
  return pattern ? CreatePatternBrush(pattern.get()) : nullptr;
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_PaintRgnDC(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                               const RECT* sourceClip, const RECT* destination,
                               const RECT* destinationClip, uint32_t rasterOp) {
  return vn::PaintThroughRegion(hDC, bitmap, destination, [=] {
    return Vn_PaintDC(hDC, bitmap, source, sourceClip, destination, destinationClip, rasterOp);
  });
}

VnStatus VN_CALL Vn_PaintRgnDCBuffer(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                                     const RECT* sourceClip, const RECT* destination,
                                     const RECT* destinationClip, uint32_t rasterOp, void* rows,
                                     int32_t firstRow, int32_t rowCount) {
  return vn::PaintThroughRegion(hDC, bitmap, destination, [=] {
    return Vn_PaintDCBuffer(hDC, bitmap, source, sourceClip, destination, destinationClip, rasterOp,
                            rows, firstRow, rowCount);
  });
}

VnStatus VN_CALL Vn_PaintRgnDCEffect(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                                     const RECT* sourceClip, const RECT* destination,
                                     const RECT* destinationClip, uint32_t rasterOp,
                                     uint32_t effect) {
  return vn::PaintThroughRegion(hDC, bitmap, destination, [=] {
    return Vn_PaintDCEffect(hDC, bitmap, source, sourceClip, destination, destinationClip, rasterOp,
                            effect);
  });
}

VnStatus VN_CALL Vn_FrameBitmapRgn(HDC hDC, BitmapHandle* bitmap, const RegionTransform* transform,
                                   uint32_t frame) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (frame >= vn::kFrames) return ERR_INVALID_PARAMETER;
  HRGN handle = nullptr;
  const VnStatus status = Vn_GetBitmapRgnHandle(bitmap, transform, &handle);
  if (status != OK) return status;
  vn::OwnedObject<HRGN> region(handle);
  const vn::OwnedObject<HBRUSH> brush(vn::DashBrush(frame));
  if (!brush) return ERR_NO_MEMORY;
  FrameRgn(hDC, region.get(), brush.get(), 1, 1);
  // The object outlives the call, a peculiarity that stays.
  region.Release();
  return OK;
}
