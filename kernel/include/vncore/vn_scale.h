/* Scaling by picking pixels: streamed, into another bitmap, and of a bitmap in place. Destination
 * pixel d takes source pixel d * old / new, rounded down; the depth never changes. And resampling,
 * which averages or interpolates them. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_SCALE_H
#define VNCORE_VN_SCALE_H

VN_BEGIN_C

/* One streamed resize, from Vn_StartResize to Vn_StopResize. */
typedef struct Vn_ResizeState Vn_ResizeState;

/* Begins a streamed resize. Returns OK, ERR_INVALID_PARAMETER (`newWidth`, `newHeight` or
 * `oldHeight` below 1) or ERR_NO_MEMORY. An `oldWidth` below 0 leaves buffers as they are. */
VN_API Vn_Status VN_CALL Vn_StartResize(int32_t oldWidth, int32_t oldHeight, int32_t newWidth,
                                        int32_t newHeight, Vn_ResizeState** state);

/* Scales source row `row` within `buffer`, which holds the larger of the two rows. Rows may come in
 * any order; rising and falling runs are the fast ones. `outWidth` receives the new width,
 * `outCount` the number of destination rows that this row yields: emit the buffer that many times.
 * For 0 the buffer is left as it was. Returns the count. */
VN_API uint32_t VN_CALL Vn_Resize(uint8_t* buffer, uint32_t row, int32_t bitsPerPixel,
                                  uint32_t* outWidth, uint32_t* outCount, Vn_ResizeState* state);

/* Ends a streamed resize. Returns OK. */
VN_API Vn_Status VN_CALL Vn_StopResize(Vn_ResizeState* state);

/* Fills all of `destination` with a scaled copy of `source`. Both have storage and the same depth,
 * which is not compared. Opposite row orders keep the picture upright. No palette is copied.
 * Returns OK, ERR_NO_BITMAP, ERR_NO_MEMORY, or what the status callback returned; stopped, the
 * destination is partly written. */
VN_API Vn_Status VN_CALL Vn_ResizeBitmap(Vn_BitmapHandle* source, Vn_BitmapHandle* destination);

/* Replaces `bitmap` by its copy of `width` by `height` pixels, the region scaled with it. Returns
 * OK, ERR_INVALID_PARAMETER (null or without storage), ERR_EMPTY_BITMAP, ERR_NO_MEMORY,
 * ERR_FILE_WRITE, or what the status callback returned.
 *
 * On any failure the pixels and the size stay. Palettes and region do not, unlike in all other
 * functions that replace a bitmap: after ERR_NO_MEMORY and after a stop by the status callback they
 * may have been freed while the record still names them. Then, before anything else:
 *     bitmap->Palette = bitmap->PaintPalette = 0;
 *     bitmap->Region = 0;
 * and give the bitmap new ones, or free it. Who wants the old ones back takes copies before the call,
 * with Vn_DupPalette and Vn_GetBitmapRgnHandle. (When memory was short for the new pixels already,
 * nothing had been freed, and what the fields named is lost to the process: nobody can tell.) After
 * the other codes everything is as it was. */
VN_API Vn_Status VN_CALL Vn_SizeBitmap(Vn_BitmapHandle* bitmap, int32_t width, int32_t height);

/* Replaces `bitmap` by its filtered copy of `width` by `height` pixels of the same depth, the region
 * scaled with it. Each axis is treated by itself, the columns first, in integers that are rounded
 * down: an axis that shrinks averages the pixels of its cells, which differ in size by at most one;
 * one that grows, or stays, puts new pixels on straight lines between neighbouring old ones. Pixels
 * are filtered as 24-bit colours. 8-bit gray with black as index 0 comes back as gray; every other
 * palette of up to 8 bits is kept, and the result dithered to it (Floyd-Steinberg). Above 8 bits the
 * result is ORDER_BGR. Both sizes are positive: others are ERR_INVALID_PARAMETER.
 * Returns OK, ERR_NO_BITMAP, ERR_NO_MEMORY, another code of an allocation or of Vn_StartDithering, or
 * what the status callback returned. Unless it is OK the bitmap stands as it was. The callback hears
 * of each row of the result, but not of the rows that repeat the first one when the height grows. */
VN_API Vn_Status VN_CALL Vn_ResampleBitmap(Vn_BitmapHandle* bitmap, int32_t width, int32_t height);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_SCALE_NAMES)
#define VNCORE_VN_SCALE_NAMES
typedef Vn_ResizeState ResizeState;
#endif
