/* Halftoning: a 1-bit bitmap by comparison with a threshold matrix. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_HALFTONE_H
#define VNCORE_VN_HALFTONE_H

VN_BEGIN_C

/* Threshold matrices of halftoning. */
enum {
  VN_HALFTONE_CLUSTERED = 0, /* grows two clustered dots, for printers */
  VN_HALFTONE_ORDERED = 1    /* scatters single dots */
};

/* Turns a bitmap of any depth into a 1-bit bitmap with the 2-colour fixed palette: a pixel is white
 * where its gray is above the threshold at its place, the matrix being laid over the storage rows.
 * Storage is chosen anew by STORAGE_AUTO; region, row order, resolution and the caller's fields
 * stay. Reports progress per row.
 * Returns OK, ERR_NO_BITMAP (also for a palette bitmap without a usable palette, and for a record
 * whose rows are too short for its pixels), ERR_INVALID_PARAMETER for another `type`,
 * ERR_NO_MEMORY, or what the status callback returned. On anything but OK the bitmap is as it
 * was. */
VN_API Vn_Status VN_CALL Vn_HalfToneBitmap(Vn_BitmapHandle* bitmap, uint32_t type);

/* The same with the matrix turned by `angle`, in hundredths of a degree: clockwise where row 0 is
 * the top line, and so counterclockwise in a picture of VIEW_BOTTOM_FIRST. */
VN_API Vn_Status VN_CALL Vn_HalfToneBitmapExt(Vn_BitmapHandle* bitmap, uint32_t type,
                                              int32_t angle);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_HALFTONE_NAMES)
#define VNCORE_VN_HALFTONE_NAMES
enum { HALFTONE_CLUSTERED = VN_HALFTONE_CLUSTERED, HALFTONE_ORDERED = VN_HALFTONE_ORDERED };
#endif
