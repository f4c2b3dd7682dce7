/* Storage of a bitmap's pixels, and access to them by rows. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_STORAGE_H
#define VNCORE_VN_STORAGE_H

VN_BEGIN_C

/* Storage requests. On Win32 each gives a mapped section; on Win32s they differ as told. */
enum {
  VN_STORAGE_AUTO = 1,    /* memory if it can be had, else a temporary file */
  VN_STORAGE_DISK = 128,  /* a temporary file */
  VN_STORAGE_MEMORY = 256 /* memory or failure */
};

/* The sizes that the library accepts: width and height from 1 to 2^31 - 1, at most 2^32 - 32 bits in
 * a row, and at most 2^32 - 4 bytes in all rows together. Vn_InitBitmap takes any numbers, and its
 * products wrap; a record beyond these sizes gets no pixels from Vn_AllocateBitmap, nor from any
 * function that makes bitmaps. Functions that write pixels leave a record without pixels alone. */

/* Gives an initialised record its pixels, DataSize bytes, to be released with Vn_FreeBitmap. The
 * library does not clear them; mapped sections and files come as zeros from the platform.
 * Returns OK, ERR_EMPTY_BITMAP (DataSize is 0), ERR_INVALID_PARAMETER (request), ERR_NO_MEMORY (also
 * for a size that is not accepted) or ERR_FILE_WRITE. */
VN_API Vn_Status VN_CALL Vn_AllocateBitmap(Vn_BitmapHandle* bitmap, int32_t request);
/* Releases region, palettes and storage. Dimensions stay, and the record can be allocated again.
 * Safe on a record without storage, and twice. An open dithering run is not touched. */
VN_API void VN_CALL Vn_FreeBitmap(Vn_BitmapHandle* bitmap);
/* As Vn_FreeBitmap, for a record with storage only. `freeAttachments` 0 first forgets palettes and
 * region without freeing them, because another record owns them now. Returns OK. */
VN_API Vn_Status VN_CALL Vn_FreeImage(Vn_BitmapHandle* bitmap, int32_t freeAttachments);

/* Make memory storage addressable through Bits, and give that back. No nesting: see
 * Vn_LockBitmap. */
VN_API void VN_CALL Vn_AccessBitmap(Vn_BitmapHandle* bitmap);
VN_API void VN_CALL Vn_ReleaseBitmap(Vn_BitmapHandle* bitmap);
/* Locks as Vn_AccessBitmap does and returns the state before, 1 locked or 0, for the matching
 * Vn_UnlockBitmap. Row calls are bracketed by this pair; pairs nest. */
VN_API int32_t VN_CALL Vn_LockBitmap(Vn_BitmapHandle* bitmap);
/* Releases when `state`, the result of the matching Vn_LockBitmap, is 0. */
VN_API void VN_CALL Vn_UnlockBitmap(Vn_BitmapHandle* bitmap, int32_t state);

/* Gives the bitmap `newHeight` rows. Kept rows keep numbers and pixels, new ones are not cleared. The
 * region stays as it is. Returns OK, ERR_NO_BITMAP, ERR_INVALID_PARAMETER (locked) or ERR_NO_MEMORY
 * (also for a height that is not accepted); on failure nothing changes. */
VN_API Vn_Status VN_CALL Vn_ChangeBitmapHeight(Vn_BitmapHandle* bitmap, uint32_t newHeight);

/* Row access. Rows are storage rows: ViewOrigin does not matter. `count` is bytes; neither row nor
 * count is checked. The Col forms start at the byte that holds pixel `column`.
 * Return the bytes moved (fewer than `count` only at the end of a temporary file), or
 * ERR_FILE_SEEK, ERR_FILE_READ, ERR_FILE_WRITE, or ERR_NO_MEMORY without storage or its lock. */
VN_API int32_t VN_CALL Vn_GetBitmapRow(Vn_BitmapHandle* bitmap, void* buffer, uint32_t row,
                                       uint32_t count);
VN_API int32_t VN_CALL Vn_PutBitmapRow(Vn_BitmapHandle* bitmap, const void* buffer, uint32_t row,
                                       uint32_t count);
VN_API int32_t VN_CALL Vn_GetBitmapRowCol(Vn_BitmapHandle* bitmap, void* buffer, uint32_t row,
                                          uint32_t column, uint32_t count);
VN_API int32_t VN_CALL Vn_PutBitmapRowCol(Vn_BitmapHandle* bitmap, const void* buffer, uint32_t row,
                                          uint32_t column, uint32_t count);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_STORAGE_NAMES)
#define VNCORE_VN_STORAGE_NAMES
enum {
  STORAGE_AUTO = VN_STORAGE_AUTO,
  STORAGE_DISK = VN_STORAGE_DISK,
  STORAGE_MEMORY = VN_STORAGE_MEMORY
};
#endif
