/* Scaling by picking pixels: streamed, into another bitmap, and of a bitmap in place. Destination
 * pixel d takes source pixel d * old / new, rounded down; the depth never changes. */
#ifndef VNCORE_VN_SCALE_H
#define VNCORE_VN_SCALE_H

#include "vn_bitmap.h"

VN_BEGIN_C

/* One streamed resize, from Vn_StartResize to Vn_StopResize. */
typedef struct ResizeState ResizeState;

/* Begins a streamed resize. Returns OK, ERR_INVALID_PARAMETER (`newWidth`, `newHeight` or
 * `oldHeight` below 1) or ERR_NO_MEMORY. */
VN_API VnStatus VN_CALL Vn_StartResize(int32_t oldWidth, int32_t oldHeight, int32_t newWidth,
                                       int32_t newHeight, ResizeState** state);

/* Scales source row `row` within `buffer`, which holds the larger of the two rows. Rows may come in
 * any order; rising and falling runs are the fast ones. `outWidth` receives the new width,
 * `outCount` the number of destination rows that this row yields: emit the buffer that many times.
 * For 0 the buffer is left as it was. Returns the count. */
VN_API uint32_t VN_CALL Vn_Resize(uint8_t* buffer, uint32_t row, int32_t bitsPerPixel,
                                  uint32_t* outWidth, uint32_t* outCount, ResizeState* state);

/* Ends a streamed resize. Returns OK. */
VN_API VnStatus VN_CALL Vn_StopResize(ResizeState* state);

/* Fills all of `destination` with a scaled copy of `source`. Both have storage and the same depth,
 * which is not compared. Opposite row orders keep the picture upright. No palette is copied.
 * Returns OK, ERR_NO_BITMAP, ERR_NO_MEMORY, or what the status callback returned; stopped, the
 * destination is partly written. */
VN_API VnStatus VN_CALL Vn_ResizeBitmap(BitmapHandle* source, BitmapHandle* destination);

/* Replaces `bitmap` by its copy of `width` by `height` pixels, the region scaled with it. Returns
 * OK, ERR_INVALID_PARAMETER (null or without storage), an allocation's code, or what the status
 * callback returned. After a failure from the resize on, the pixels stand as they were, but
 * palettes and region are gone while the record still names them: set Palette, PaintPalette and
 * Region to 0 before anything else. */
VN_API VnStatus VN_CALL Vn_SizeBitmap(BitmapHandle* bitmap, int32_t width, int32_t height);

VN_END_C

#endif
