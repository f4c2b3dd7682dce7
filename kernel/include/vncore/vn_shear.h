/* Shear: a bitmap slanted to the side. Pixels are moved and never mixed. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_SHEAR_H
#define VNCORE_VN_SHEAR_H

VN_BEGIN_C

/* Replaces `bitmap` by its copy slanted by `angle` hundredths of a degree, from -4500 to 4500.
 * `horizontal` moves rows: the bottom row of the picture stays at the left and each one above lies
 * further to the right by the tangent of the angle; a negative angle leans the other way. Zero moves
 * columns: it is the same on the picture turned clockwise by a quarter, turned back. The result is
 * as much wider, or taller, and `fillColor`, which goes through the palette up to 8 bits, is around
 * the slanted picture. Region, resolutions and dithering method do not come along: they are those of
 * a new bitmap.
 *
 * Rows that would be longer than 32768 bytes are not made: the bitmap stands as it was, and so it
 * does where there is no memory for the row buffers. Both are OK to the caller, who sees them by the
 * size.
 *
 * Returns OK, ERR_NO_BITMAP (also for a record whose rows are too short for its pixels),
 * ERR_INVALID_PARAMETER (the angle), a code of Vn_CreateBitmap or of the turns, or what the status
 * callback returned. The bitmap stands as it was on any of them but one: a callback that stops
 * between rows leaves the rest of the rows to the fill colour, and the bitmap is replaced. With a
 * negative angle that stop is forgotten, the result is OK, and the callback is asked again, with
 * percentages that go on rising, until it returns OK: a callback must not refuse percentages above
 * 100. */
VN_API Vn_Status VN_CALL Vn_ShearBitmap(Vn_BitmapHandle* bitmap, int32_t angle, int32_t horizontal,
                                        Vn_COLORREF fillColor);

VN_END_C

#endif
