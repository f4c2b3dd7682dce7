/* Bitmaps made from bitmaps, and single pixels by colour. Destinations come first; their records
 * are written whole and need no initialising. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_COPY_H
#define VNCORE_VN_COPY_H

VN_BEGIN_C

/* Modes of Vn_DupBitmapNewDim, a set of bits. */
enum {
  VN_DUP_ALLOCATE = 1, /* storage by STORAGE_AUTO; without it none */
  VN_DUP_PALETTE = 2,  /* palettes are duplicated; without it the handles are shared */
  VN_DUP_REGION = 4    /* the region is duplicated; without it the pointer is shared */
};

/* Copies the record word by word. Storage, palettes, region and all else are shared afterwards, and
 * freeing either record leaves the other dangling: a record is moved so, not duplicated. */
VN_API void VN_CALL Vn_CopyBitmapHandle(Vn_BitmapHandle* destination,
                                        const Vn_BitmapHandle* source);

/* Makes `destination` a bitmap of other dimensions with all that `source` carries but its pixels:
 * row order, DIB header and colour table as they are (so they still describe the source), marks,
 * resolution, the caller's fields, and by `mode` (DUP_ bits) storage, palettes and region. Colour
 * order and dithering method are those of a new bitmap. A record that shares palettes or region is
 * released with Vn_FreeImage(bitmap, 0), or they go with it.
 * Returns OK, ERR_NO_BITMAP, or a code of the allocation. On failure nothing is left to free. */
VN_API Vn_Status VN_CALL Vn_DupBitmapNewDim(Vn_BitmapHandle* destination, Vn_BitmapHandle* source,
                                            uint32_t width, uint32_t height, int32_t bitsPerPixel,
                                            uint32_t mode);

/* Copies pixels row for row, raw, between bitmaps of the same dimensions and depth.
 * Returns OK, ERR_NO_BITMAP or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_CopyBitmapData(Vn_BitmapHandle* destination, Vn_BitmapHandle* source);

/* Makes `destination` an independent copy. Returns OK, ERR_NO_BITMAP, or a code of the allocation;
 * on failure nothing is left to free. */
VN_API Vn_Status VN_CALL Vn_CopyBitmap(Vn_BitmapHandle* destination, Vn_BitmapHandle* source);

/* Makes `destination` an independent copy of a rectangle of `source`, in storage rows; the region
 * moves along and is cut to the new size. The rectangle is not tested against the source: beside it
 * lie the pixels of the next row, and zeros beyond the last. Results as of Vn_CopyBitmap. */
VN_API Vn_Status VN_CALL Vn_CopyBitmapRect(Vn_BitmapHandle* destination, Vn_BitmapHandle* source,
                                           uint32_t left, uint32_t top, uint32_t width,
                                           uint32_t height);

/* What Vn_GetPixelColor answers where there is no pixel. */
#define VN_NO_PIXEL 0x1000000u

/* The colour of a pixel, whatever the region, or VN_NO_PIXEL. `row` is a storage row. */
VN_API Vn_COLORREF VN_CALL Vn_GetPixelColor(Vn_BitmapHandle* bitmap, int32_t row, int32_t column);

/* Writes a pixel inside the region. Up to 8 bits a colour goes to the nearest palette entry, and
 * the low bits of a `color` above 0xFFFFFF are the pixel value itself.
 * Returns OK, ERR_NO_BITMAP, or ERR_EMPTY_BITMAP for a position outside the region. */
VN_API Vn_Status VN_CALL Vn_PutPixelColor(Vn_BitmapHandle* bitmap, int32_t row, int32_t column,
                                          Vn_COLORREF color);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_COPY_NAMES)
#define VNCORE_VN_COPY_NAMES
enum { DUP_ALLOCATE = VN_DUP_ALLOCATE, DUP_PALETTE = VN_DUP_PALETTE, DUP_REGION = VN_DUP_REGION };
#endif
