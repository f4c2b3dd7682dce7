/* Pixels written under the control of a region: row segments, fill and clear. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_FILL_H
#define VNCORE_VN_FILL_H

VN_BEGIN_C

/* Writes the stretches of a row that `segments` names, exact to the pixel, and leaves every other
 * pixel alone. `segments` holds pairs of columns, left and right (exclusive); `count` is the number
 * of entries, two a pair. The pixel at column c of `source` goes to column c + `columnOffset`,
 * which must be a multiple of 8 at depth 1 and of 2 at depth 4.
 * Pixels that would come to lie outside the row's bytes are left out, and so is a row from Height on.
 * Returns OK, ERR_FILE_SEEK (also without storage), ERR_FILE_READ, ERR_FILE_WRITE, or ERR_NO_MEMORY
 * (a moveable block that nobody locked); earlier pairs then stay written. */
VN_API Vn_Status VN_CALL Vn_PutBitmapRowSegments(Vn_BitmapHandle* bitmap, const void* source,
                                                 uint32_t row, int32_t columnOffset,
                                                 const int32_t* segments, int32_t count);

/* Fills the bitmap, or its region, with the colour, or with pixel value 0. Failing writes to a
 * temporary file are not reported; a record without storage is left alone. Return OK, ERR_NO_BITMAP
 * for null, ERR_NO_MEMORY, or what the status callback returned; stopped, the rows so far stay
 * written. */
VN_API Vn_Status VN_CALL Vn_FillBitmap(Vn_BitmapHandle* bitmap, Vn_COLORREF color);
VN_API Vn_Status VN_CALL Vn_ClearBitmap(Vn_BitmapHandle* bitmap);

VN_END_C

#endif
