/* The system clipboard, and capture of what stands on a device context. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_CLIPBOARD_H
#define VNCORE_VN_CLIPBOARD_H

VN_BEGIN_C

/* Flags of Vn_CopyToClipboardExt. */
enum {
  VN_COPY_EMPTY = 1,  /* empty the clipboard first */
  VN_COPY_DIB = 2,    /* put a DIB on it */
  VN_COPY_DDB = 4,    /* put a device bitmap on it */
  VN_COPY_PALETTE = 8 /* put the paint palette on it, where the screen needs one */
};

/* Puts copies of the bitmap on the clipboard, as CF_PALETTE, CF_DIB and CF_BITMAP in this order.
 * `window` becomes the clipboard's owner and may be null as far as the system allows. All is made
 * before the clipboard is opened. Returns OK, ERR_NO_BITMAP, ERR_NO_MEMORY, or
 * ERR_INVALID_PARAMETER when there is no context or somebody else holds the clipboard. */
VN_API Vn_Status VN_CALL Vn_CopyToClipboardExt(Vn_HWND window, Vn_BitmapHandle* bitmap,
                                               uint32_t flags);
/* All four flags. Returns 1, or 0 for any failure. */
VN_API int32_t VN_CALL Vn_CopyToClipboard(Vn_HWND window, Vn_BitmapHandle* bitmap);
/* Overwrites the record `bitmap` with the picture on the clipboard: CF_DIB before CF_BITMAP, which is
 * read through CF_PALETTE or else the system palette. Returns 1, or 0 for any failure. */
VN_API int32_t VN_CALL Vn_CopyFromClipboard(Vn_HWND window, Vn_BitmapHandle* bitmap);
/* Nonzero when the clipboard holds a picture. */
VN_API int32_t VN_CALL Vn_ClipboardReady(void);

/* Overwrites the record `bitmap` with what stands in `rect` on `hDC`, at the depth of the device. The
 * height counts by magnitude, from rect->top down.
 * Returns OK, ERR_INVALID_PARAMETER (also for an empty rectangle) or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_ScreenCaptureBitmap(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                                                const Vn_RECT* rect);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_CLIPBOARD_NAMES)
#define VNCORE_VN_CLIPBOARD_NAMES
enum {
  COPY_EMPTY = VN_COPY_EMPTY,
  COPY_DIB = VN_COPY_DIB,
  COPY_DDB = VN_COPY_DDB,
  COPY_PALETTE = VN_COPY_PALETTE
};
#endif
