/* The region of a bitmap: the set of pixels that writers and painters confine themselves to.
 *
 * A region lives in storage coordinates: x is a column, y a storage row. It is clipped to the
 * bitmap. A bitmap without a region is selected whole; an empty region selects nothing. None of
 * these functions needs the bitmap to have pixels: Width and Height are enough.
 *
 * BitmapHandle.Region belongs to the bitmap. A function that changes the bitmap's size or turns it
 * takes the region along and keeps it when it fails, with the one exception of Vn_SizeBitmap, see
 * there. Vn_ChangeBitmapHeight leaves the region as it is, and writers pass over what then lies
 * outside.
 */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_REGION_H
#define VNCORE_VN_REGION_H

VN_BEGIN_C

/* How the caller's space lies to the bitmap's. A function that takes a pointer to one takes null
 * for none. Valid when ViewOrigin is a VIEW_ value and no denominator is 0; anything else is
 * ERR_INVALID_PARAMETER. The rows are turned over when ViewOrigin differs from the bitmap's.
 *
 * Setting goes offset, scale (truncated), flip; getting goes flip, scale, offset. Columns then
 * round up, rows round up when ViewOrigin is VIEW_BOTTOM_FIRST and are truncated otherwise. The
 * two are not inverses: both multiply by numerator over denominator. */
typedef struct Vn_RegionTransform {
  int32_t ViewOrigin;        /* row order of the caller's space, a VIEW_ value */
  int32_t XScaleNumerator;   /* 0 collapses the shape */
  int32_t XScaleDenominator; /* not 0 */
  int32_t YScaleNumerator;
  int32_t YScaleDenominator; /* not 0 */
  int32_t XOffset;
  int32_t YOffset;
} Vn_RegionTransform;

/* What becomes of the present region (old; the whole bitmap where there is none) and a new
 * shape. */
enum {
  VN_REGION_COMBINE_AND = 0,             /* old and new */
  VN_REGION_COMBINE_REPLACE = 1,         /* new */
  VN_REGION_COMBINE_NEW_MINUS_OLD = 2,   /* new without old */
  VN_REGION_COMBINE_OLD_MINUS_NEW = 3,   /* old without new */
  VN_REGION_COMBINE_OR = 4,              /* old or new */
  VN_REGION_COMBINE_XOR = 5,             /* old or new but not both */
  VN_REGION_COMBINE_REPLACE_INVERTED = 6 /* the bitmap's area, in the shape's own space, xor new */
};

/* Fill rules of Vn_SetBitmapRgnPolygon. They are not the platform's numbers. */
enum { VN_REGION_FILL_WINDING = 0, VN_REGION_FILL_ALTERNATE = 1 };

/* Setting. `combine` is a REGION_COMBINE_ value. A new shape is transformed and clipped to the
 * bitmap before it is combined. Each returns OK, ERR_INVALID_PARAMETER (also for a null bitmap) or
 * ERR_NO_MEMORY. A failure of REPLACE leaves the region as it was; a failure of another mode may
 * leave the new shape alone. */

/* From a platform region, which stays the caller's. Null removes the region, whatever `combine`. */
VN_API Vn_Status VN_CALL Vn_SetBitmapRgnHandle(Vn_BitmapHandle* bitmap,
                                               const Vn_RegionTransform* transform, Vn_HRGN region,
                                               uint32_t combine);
VN_API Vn_Status VN_CALL Vn_SetBitmapRgnRect(Vn_BitmapHandle* bitmap,
                                             const Vn_RegionTransform* transform,
                                             const Vn_RECT* rect, uint32_t combine);
/* The ellipse within `box`. */
VN_API Vn_Status VN_CALL Vn_SetBitmapRgnEllipse(Vn_BitmapHandle* bitmap,
                                                const Vn_RegionTransform* transform,
                                                const Vn_RECT* box, uint32_t combine);
/* `fillRule` is a REGION_FILL_ value. */
VN_API Vn_Status VN_CALL Vn_SetBitmapRgnPolygon(Vn_BitmapHandle* bitmap,
                                                const Vn_RegionTransform* transform,
                                                const Vn_POINT* points, int32_t count,
                                                uint32_t fillRule, uint32_t combine);
/* A rectangle with corners cut from an ellipse of `cornerWidth` by `cornerHeight`. */
VN_API Vn_Status VN_CALL Vn_SetBitmapRgnRoundRect(Vn_BitmapHandle* bitmap,
                                                  const Vn_RegionTransform* transform,
                                                  const Vn_RECT* rect, int32_t cornerWidth,
                                                  int32_t cornerHeight, uint32_t combine);
/* Removes the region. As Vn_SetBitmapRgnHandle with null. */
VN_API Vn_Status VN_CALL Vn_FreeBitmapRgn(Vn_BitmapHandle* bitmap);
/* Moves the region; what leaves the bitmap is lost. A bitmap without a region gets one: its area,
 * moved. Returns OK, ERR_NO_BITMAP or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_OffsetBitmapRgn(Vn_BitmapHandle* bitmap, int32_t rows, int32_t columns);

/* Getting. */

/* Writes a new platform region, the caller's to delete, to `region`. The record keeps a copy, so
 * that the next call with the same transform does not build it again.
 * Returns OK, ERR_NO_BITMAP, ERR_INVALID_PARAMETER or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_GetBitmapRgnHandle(Vn_BitmapHandle* bitmap,
                                               const Vn_RegionTransform* transform,
                                               Vn_HRGN* region);
/* Writes the bounds: of a region the rectangle kept with it, otherwise the bitmap's.
 * Returns OK, ERR_NO_BITMAP or ERR_INVALID_PARAMETER. */
VN_API Vn_Status VN_CALL Vn_GetBitmapRgnBounds(Vn_BitmapHandle* bitmap,
                                               const Vn_RegionTransform* transform,
                                               Vn_RECT* bounds);
/* Returns 1 when the pixel is selected, else 0, also for a null bitmap. The row comes first. */
VN_API int32_t VN_CALL Vn_IsPtInBitmapRgn(const Vn_BitmapHandle* bitmap, int32_t row,
                                          int32_t column);
/* Returns 1 when the bitmap has a region, be it empty, else 0, also for a null bitmap. */
VN_API int32_t VN_CALL Vn_BitmapHasRgn(const Vn_BitmapHandle* bitmap);

/* Clip segments: the column runs that a storage row selects, as pairs of 32-bit columns, left and
 * right, right exclusive. Counts are counts of array entries, two for each run. */

/* Writes the number of selected pixels, in 32 bits. Returns OK or ERR_NO_BITMAP. */
VN_API Vn_Status VN_CALL Vn_GetBitmapRgnArea(const Vn_BitmapHandle* bitmap, uint32_t* area);
/* Writes half the width of the bounds, rounded up; 2 without a region. A row that alternates pixel
 * by pixel needs twice as many entries: give Vn_GetBitmapClipSegments an array of twice this.
 * Returns OK, ERR_NO_BITMAP or ERR_INVALID_PARAMETER. */
VN_API Vn_Status VN_CALL Vn_GetBitmapClipSegmentsMax(const Vn_BitmapHandle* bitmap,
                                                     int32_t* maximum);
/* Writes the runs of storage row `row` to `segments`, in the order in which the region holds its
 * rectangles, and the number of entries to `count`: 0 for a row outside the region. Without a
 * region any row gives the one run 0, Width.
 * Returns OK, ERR_NO_BITMAP or ERR_INVALID_PARAMETER. */
VN_API Vn_Status VN_CALL Vn_GetBitmapClipSegments(const Vn_BitmapHandle* bitmap, int32_t row,
                                                  int32_t* segments, int32_t* count);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_REGION_NAMES)
#define VNCORE_VN_REGION_NAMES
typedef Vn_RegionTransform RegionTransform;
enum {
  REGION_COMBINE_AND = VN_REGION_COMBINE_AND,
  REGION_COMBINE_REPLACE = VN_REGION_COMBINE_REPLACE,
  REGION_COMBINE_NEW_MINUS_OLD = VN_REGION_COMBINE_NEW_MINUS_OLD,
  REGION_COMBINE_OLD_MINUS_NEW = VN_REGION_COMBINE_OLD_MINUS_NEW,
  REGION_COMBINE_OR = VN_REGION_COMBINE_OR,
  REGION_COMBINE_XOR = VN_REGION_COMBINE_XOR,
  REGION_COMBINE_REPLACE_INVERTED = VN_REGION_COMBINE_REPLACE_INVERTED
};
enum {
  REGION_FILL_WINDING = VN_REGION_FILL_WINDING,
  REGION_FILL_ALTERNATE = VN_REGION_FILL_ALTERNATE
};
#endif
