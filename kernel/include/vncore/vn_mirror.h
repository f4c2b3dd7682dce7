/* Mirrors, in place, at any depth; the region goes with the picture. A mirror done twice is the
 * identity on pixels and region. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_MIRROR_H
#define VNCORE_VN_MIRROR_H

VN_BEGIN_C

/* Turns a bitmap upside down: row r changes places with row Height - 1 - r. Reports progress per
 * pair of rows; the middle row of an odd height is none. A height of 0 or 1 has no pairs: the
 * callback then hears 0 and nothing more.
 * Returns OK, ERR_NO_BITMAP (also for a record whose rows are too short for its pixels),
 * ERR_NO_MEMORY, or what the status callback returned: stopped, the rows done so far are mirrored
 * and the region is as it was. */
VN_API Vn_Status VN_CALL Vn_FlipBitmap(Vn_BitmapHandle* bitmap);

/* Mirrors a bitmap left to right. At 1 and 4 bits the rest of a row's last byte becomes 0. Reports
 * progress per row; a height of 0 has none. Returns as Vn_FlipBitmap does. */
VN_API Vn_Status VN_CALL Vn_ReverseBitmap(Vn_BitmapHandle* bitmap);

VN_END_C

#endif
