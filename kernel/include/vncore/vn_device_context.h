/* A device context that draws straight into a bitmap's pixels. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_DEVICE_CONTEXT_H
#define VNCORE_VN_DEVICE_CONTEXT_H

VN_BEGIN_C

/* A context on the bitmap's own storage, without a copy, for the system's text, line and bit-block
 * functions; confined to the bitmap's region if there is one. Rows of a bitmap that is not
 * VIEW_BOTTOM_FIRST are turned over for it, and stay so. The storage must be a mapped section, which
 * it always is on Win32. Delete the context with Vn_DeleteVornDC before the bitmap is freed.
 * Returns 0 for any failure. */
VN_API Vn_HDC VN_CALL Vn_CreateVornDC(Vn_BitmapHandle* bitmap);
/* Deletes a context of Vn_CreateVornDC; the bitmap keeps what was drawn. Returns nonzero on
 * success. */
VN_API int32_t VN_CALL Vn_DeleteVornDC(Vn_HDC hDC);

VN_END_C

#endif
