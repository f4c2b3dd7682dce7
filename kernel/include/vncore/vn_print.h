/* Bitmaps on printer pages. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_PRINT_H
#define VNCORE_VN_PRINT_H

VN_BEGIN_C

/* A job is a device context. Its first call opens the default printer, the document "VORN GRAPHIC"
 * and the page; further calls add to the same page; the call with `last` nonzero ends page and
 * document and deletes the context. A null bitmap only opens or ends the job.
 *
 * Positions and sizes are device pixels of the page from 1, 1 to HORZRES, VERTRES. A width or height
 * of 0 follows from the other one by the bitmap's aspect; both 0 make it as large as the page
 * allows. An `x` or `y` of 0 centres, so that exactly 0 cannot be asked for. A bitmap that reaches
 * beyond the page is squeezed onto it.
 *
 * On a monochrome printer pixels are reduced with the clustered matrix if MODE_DITHER is set;
 * otherwise the driver reduces colours. With a status callback the page is painted a device row at a
 * time; a stop aborts the job if this call opened it. What a paint cannot do (ERR_NO_MEMORY) is not
 * reported.
 *
 * All return the job's context, or 0: no printer, no document, a stop, or a page that could not be
 * ended; after `last` the context is dead either way. A stop in a later call but the last leaves the
 * job open: its context is still the caller's, to go on with or to end. */

/* Keeps the job's context per thread, and forgets it at a stop: a caller that stops jobs keeps the
 * result of the call before, or uses Vn_PrintBitmapExt. */
VN_API Vn_HDC VN_CALL Vn_PrintBitmap(Vn_BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width,
                                     int32_t height, int32_t last);
/* Takes the job's context, or null for a new job. The caller of a context of its own has called
 * StartDoc and StartPage; with `last` the job ends and the context is deleted all the same. */
VN_API Vn_HDC VN_CALL Vn_PrintBitmapExt(Vn_HDC hDC, Vn_BitmapHandle* bitmap, int32_t x, int32_t y,
                                        int32_t width, int32_t height, int32_t last);
/* The same in one device call, without scaling, placement or progress: all of the bitmap's size is
 * printed at x, y, and `width` and `height` tell how much of the bitmap, from its first pixel, goes
 * there. Bitmaps on disk and those of 16 or 32 bits go the way of Vn_PrintBitmapExt. A
 * VIEW_TOP_FIRST bitmap is turned over for the call and back. */
VN_API Vn_HDC VN_CALL Vn_PrintBitmapFast(Vn_HDC hDC, Vn_BitmapHandle* bitmap, int32_t x, int32_t y,
                                         int32_t width, int32_t height, int32_t last);

VN_END_C

#endif
