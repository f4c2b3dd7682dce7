/* Regions and pictures: painting through a bitmap's region, its outline, the region of a colour. */
#include "vn_region.h"

#ifndef VNCORE_VN_REGION_PAINT_H
#define VNCORE_VN_REGION_PAINT_H

VN_BEGIN_C

/* Selects the pixels of exactly `color`, red, green and blue as 8-bit values, and combines them
 * with the present region as `combine` tells (a REGION_COMBINE_ value). Leaves DibColors of a
 * paletted bitmap in index form. Does not report progress.
 * Returns OK, ERR_NO_BITMAP, ERR_INVALID_PARAMETER or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_SetBitmapRgnColor(Vn_BitmapHandle* bitmap, Vn_COLORREF color,
                                              uint32_t combine);

/* Vn_PaintDC, Vn_PaintDCBuffer and Vn_PaintDCEffect confined to the bitmap's region. The region is laid over `destination` as the whole
 * bitmap would be, whatever `source`; its rows are truncated when scaled. For the length of the
 * paint it replaces the context's own clip. A bitmap without a region is confined to `destination`.
 * Returns ERR_NO_BITMAP for a null bitmap, ERR_INVALID_PARAMETER for a null destination,
 * ERR_NO_MEMORY, or what the paint returns. */
VN_API Vn_Status VN_CALL Vn_PaintRgnDC(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                                       const Vn_RECT* sourceClip, const Vn_RECT* destination,
                                       const Vn_RECT* destinationClip, uint32_t rasterOp);
VN_API Vn_Status VN_CALL Vn_PaintRgnDCBuffer(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                                             const Vn_RECT* source, const Vn_RECT* sourceClip,
                                             const Vn_RECT* destination,
                                             const Vn_RECT* destinationClip, uint32_t rasterOp,
                                             void* rows, int32_t firstRow, int32_t rowCount);
VN_API Vn_Status VN_CALL Vn_PaintRgnDCEffect(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                                             const Vn_RECT* source, const Vn_RECT* sourceClip,
                                             const Vn_RECT* destination,
                                             const Vn_RECT* destinationClip, uint32_t rasterOp,
                                             uint32_t effect);

/* Draws the outline of the region, within it and one pixel wide, in diagonal dashes of the
 * context's text and background colours. `transform` (null: none) leads to the device. Drawn with
 * `frame` 0, 1, ... 7 in turn, the dashes march. Each successful call leaves one platform region
 * alive for the rest of the process.
 * Returns OK, ERR_NO_BITMAP, ERR_INVALID_PARAMETER (`frame` above 7) or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_FrameBitmapRgn(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                                           const Vn_RegionTransform* transform, uint32_t frame);

VN_END_C

#endif
