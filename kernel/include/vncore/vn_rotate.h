/* Rotation about the centre. Angles are in hundredths of a degree; positive ones turn clockwise as
 * the picture is seen, for both row orders, and any value is folded into one turn.
 *
 * A half turn, and a quarter turn that grows or of a square, moves every pixel exactly. Any other
 * angle asks for each pixel of the result which source pixel lies there, in 14-bit fixed point, and
 * copies it: colours are never mixed. What no source pixel covers takes the fill colour. Two turns
 * of such angles are not one of their sum. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_ROTATE_H
#define VNCORE_VN_ROTATE_H

VN_BEGIN_C

/* Vn_IntRotateBitmapFine by whole degrees, black around the picture, progress from 0 to 100. */
VN_API Vn_Status VN_CALL Vn_RotateBitmap(Vn_BitmapHandle* bitmap, int32_t angle, int32_t resize);

/* Vn_IntRotateBitmapFine with progress from 0 to 100. */
VN_API Vn_Status VN_CALL Vn_RotateBitmapFine(Vn_BitmapHandle* bitmap, int32_t angle, int32_t resize,
                                             Vn_COLORREF fillColor);

/* Replaces `bitmap` by its copy turned by `angle`, the region turned with it. With `resize` the
 * result grows to hold the whole turned picture; without, it keeps its size and corners are cut
 * off (a half turn keeps its size anyway). `fillColor` goes through the active palette up to 8
 * bits. Progress runs from `statusStart` to `statusEnd` percent, per row.
 * Returns OK, ERR_NO_BITMAP (also for a record whose rows are too short for its pixels), a code of
 * the allocation, ERR_NO_MEMORY (also when the region could not be turned), or what the status
 * callback returned. On anything but OK the bitmap is as it was, but for a half turn, which works
 * in place: stopped, it leaves the rows done so far turned. */
VN_API Vn_Status VN_CALL Vn_IntRotateBitmapFine(Vn_BitmapHandle* bitmap, int32_t angle,
                                                int32_t resize, Vn_COLORREF fillColor,
                                                int32_t statusStart, int32_t statusEnd);

VN_END_C

#endif
