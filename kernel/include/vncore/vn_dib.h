/* Exchange with the two picture forms of the windowing system: the device-independent bitmap (DIB),
 * one block of global memory, and the device bitmap (DDB), a bitmap object of a device.
 *
 * Convert copies and leaves its source alone; Change moves, and consumes its source on success.
 * A DIB made here has the 40-byte header, bottom-up rows, no compression, 1, 4, 8 or 24 bits (16 and
 * 32 are widened to 24) and ColorCount colours at up to 8 bits. The caller frees DIBs with
 * GlobalFree and device bitmaps with DeleteObject. Functions that fill a bitmap overwrite its record
 * whatever it held; the caller frees it with Vn_FreeBitmap. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_DIB_H
#define VNCORE_VN_DIB_H

VN_BEGIN_C

/* A new DIB, or 0. biClrUsed is 0. Rows of 16 and 32 bits are widened in the order in which they
 * stand: red and blue of an ORDER_RGB bitmap change places. ViewOrigin 3 counts as bottom first. */
VN_API Vn_HGLOBAL VN_CALL Vn_ConvertToDIB(Vn_BitmapHandle* bitmap);
/* The same, and the bitmap is freed; where its storage is global memory it becomes the DIB without a
 * second block. biClrUsed is ColorCount. Rows of 16 and 32 bits come out blue first whatever their
 * order. Returns 0, with the bitmap as it was, also for a locked one. */
VN_API Vn_HGLOBAL VN_CALL Vn_ChangeToDIB(Vn_BitmapHandle* bitmap);
/* Fills `bitmap` from a header of 40 bytes, its table of 2, 16 or 256 colours (biClrUsed is not
 * looked at) and bottom-up rows at `pixels`. The caller vouches for all three: nothing here tells
 * how long they are, and biSize, biPlanes and biCompression are not looked at. A resolution of 0
 * becomes one from the screen's size.
 * Returns OK, ERR_BITS_PER_PIXEL, ERR_EMPTY_BITMAP or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_ConvertFromDIB(Vn_BitmapHandle* bitmap, const Vn_BITMAPINFO* info,
                                           const void* pixels);
/* Fills `bitmap` from a DIB of unknown origin, with a header of 12 or 40 bytes or a longer one, and
 * frees the DIB; on Win32s the block becomes the storage. biClrUsed counts, also above 8 bits.
 * Returns OK, or with the DIB left to the caller: ERR_INVALID_PARAMETER (no bitmap, no block, an
 * empty picture), ERR_UNSUPPORTED (planes, compression, depth, a block that is shorter than its
 * header says, rows from the top down) or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_ChangeFromDIB(Vn_BitmapHandle* bitmap, Vn_HGLOBAL dib);

/* A new bitmap object that is compatible with `hDC` (null: the screen) and shows the bitmap, dithered
 * where the device has fewer colours; or 0. */
VN_API Vn_HBITMAP VN_CALL Vn_ConvertToDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap);
/* The same, and the bitmap is freed when the result is not 0. */
VN_API Vn_HBITMAP VN_CALL Vn_ChangeToDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap);
/* Fills `bitmap` from a bitmap object, which must not be selected anywhere. `hDC` serves to read it,
 * with `palette` realised if that is not null; 16 and 32 bits come out at 24.
 * Returns OK, ERR_INVALID_PARAMETER (also when it cannot be read) or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_ConvertFromDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap, Vn_HBITMAP object,
                                           Vn_HPALETTE palette);
/* The same, and both objects are deleted on OK. */
VN_API Vn_Status VN_CALL Vn_ChangeFromDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap, Vn_HBITMAP object,
                                          Vn_HPALETTE palette);

VN_END_C

#endif
