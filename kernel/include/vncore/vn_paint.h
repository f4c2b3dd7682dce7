/* Painting a bitmap on a device context. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_PAINT_H
#define VNCORE_VN_PAINT_H

VN_BEGIN_C

/* Display mode bits of the thread; 12 at the start. */
enum {
  VN_MODE_ORDERED_DITHER = 0x01, /* ordered dithering; clear: error diffusion */
  VN_MODE_SHORT_ROWS = 0x02,     /* kept during effects on short rows; nothing branches on it */
  VN_MODE_DEVICE_INDEXES = 0x04, /* pixel values address the realised palette directly */
  VN_MODE_DITHER = 0x08,       /* reduce rows to the device's depth here; clear: the device does */
  VN_MODE_BITONAL_GRAY = 0x10, /* 1-bit gray bitmaps show as 8-bit gray, averaged when scaled */
  VN_MODE_CLUSTERED_MATRIX = 0x20, /* ordered 1-bit output takes the clustered matrix */
  VN_MODE_BITONAL_VOTE = 0x40,     /* scaled 1-bit gray bitmaps keep thin lines by an ink count */
  VN_MODE_FIXED_PALETTE = 0x80     /* paletted bitmaps go through the fixed palette as well */
};

/* The raster operations that have names; any other three-operand code of the platform will do. */
enum {
  VN_SRCCOPY = 0x00CC0020,
  VN_SRCPAINT = 0x00EE0086,
  VN_SRCAND = 0x008800C6,
  VN_SRCINVERT = 0x00660046,
  VN_SRCERASE = 0x00440328,
  VN_NOTSRCCOPY = 0x00330008,
  VN_NOTSRCERASE = 0x001100A6,
  VN_MERGECOPY = 0x00C000CA,
  VN_MERGEPAINT = 0x00BB0226,
  VN_PATCOPY = 0x00F00021,
  VN_PATPAINT = 0x00FB0A09,
  VN_PATINVERT = 0x005A0049,
  VN_DSTINVERT = 0x00550009,
  VN_BLACKNESS = 0x00000042,
  VN_WHITENESS = 0x00FF0062
};

/* How rows go to the device, the second result of Vn_GetDitherFlags. */
enum {
  VN_PAINT_DIRECT = 0,        /* as they are */
  VN_PAINT_EXPAND = 1,        /* 16 or 32 bits widened to 24 */
  VN_PAINT_DITHER = 2,        /* reduced to the device's depth and its fixed palette */
  VN_PAINT_GRAY = 3,          /* 1 bit as 8-bit gray, bit 1 bright */
  VN_PAINT_GRAY_INVERTED = 4, /* 1 bit as 8-bit gray, bit 1 dark */
  VN_PAINT_VOTE = 5,          /* 1 bit scaled by ink count, entry 0 is the ink */
  VN_PAINT_VOTE_INVERTED = 6  /* 1 bit scaled by ink count, entry 1 is the ink */
};

/* Paints `bitmap` on `hDC`. `source` and `sourceClip` are in columns and storage rows; null means
 * the whole bitmap and the source. `source` maps onto `destination` (device coordinates, not null),
 * of which `destinationClip` (null: all of it) is written. `rasterOp` goes to every device call.
 * Empty intersections paint nothing and are OK. The caller has realised Vn_CreatePaintPalette.
 * Returns OK, ERR_NO_BITMAP, ERR_INVALID_PARAMETER or ERR_NO_MEMORY (nothing painted). */
VN_API Vn_Status VN_CALL Vn_PaintDC(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                                    const Vn_RECT* sourceClip, const Vn_RECT* destination,
                                    const Vn_RECT* destinationClip, uint32_t rasterOp);
/* Paints rows that the caller holds, be they in the bitmap or not: `rowCount` rows at BytesPerLine
 * from each other, of which the first is storage row `firstRow`. `bitmap` gives the measures and
 * the palette and needs no storage. The rectangles are those of a paint of the whole picture, and
 * the rows come where that would put them; 1-bit rows are not shown as gray and not voted on.
 *
 * Rows that go out as they are at 1:1 are the exception: all of `rows` is sent, at its full width
 * and from device column 0 on, clips only deciding whether it is sent; where the clip lets nothing
 * through the bitmap is left locked. Several rows of a VIEW_TOP_FIRST bitmap are turned over in
 * place meanwhile, and back. The result is then no status: BytesPerLine where rows were turned
 * over, else 0 or 1.
 *
 * Returns ERR_NO_BITMAP for a null `bitmap` or `rows`, ERR_INVALID_PARAMETER for a null `hDC` or
 * `destination`, otherwise OK, ERR_NO_MEMORY or that exception's result. */
VN_API Vn_Status VN_CALL Vn_PaintDCBuffer(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                                          const Vn_RECT* source, const Vn_RECT* sourceClip,
                                          const Vn_RECT* destination,
                                          const Vn_RECT* destinationClip, uint32_t rasterOp,
                                          void* rows, int32_t firstRow, int32_t rowCount);
/* What a paint would do: writes the device's depth (1, 4, 8 or 24) and the PAINT_ kind. */
VN_API void VN_CALL Vn_GetDitherFlags(Vn_HDC hDC, Vn_BitmapHandle* bitmap, int32_t* deviceBits,
                                      int32_t* paintKind);
/* The palette to select and realise before painting, the caller's to delete; 0 when none is needed
 * and on failure. */
VN_API Vn_HPALETTE VN_CALL Vn_CreatePaintPalette(Vn_HDC hDC, Vn_BitmapHandle* bitmap);
/* Replaces the bits of `mask` in the thread's display mode by those of `value`; returns the earlier
 * mode. Restore with Vn_SetDisplayMode(-1, earlier). */
VN_API uint32_t VN_CALL Vn_SetDisplayMode(uint32_t mask, uint32_t value);
VN_API uint32_t VN_CALL Vn_GetDisplayMode(void);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_PAINT_NAMES)
#define VNCORE_VN_PAINT_NAMES
enum {
  MODE_ORDERED_DITHER = VN_MODE_ORDERED_DITHER,
  MODE_SHORT_ROWS = VN_MODE_SHORT_ROWS,
  MODE_DEVICE_INDEXES = VN_MODE_DEVICE_INDEXES,
  MODE_DITHER = VN_MODE_DITHER,
  MODE_BITONAL_GRAY = VN_MODE_BITONAL_GRAY,
  MODE_CLUSTERED_MATRIX = VN_MODE_CLUSTERED_MATRIX,
  MODE_BITONAL_VOTE = VN_MODE_BITONAL_VOTE,
  MODE_FIXED_PALETTE = VN_MODE_FIXED_PALETTE
};
enum {
  PAINT_DIRECT = VN_PAINT_DIRECT,
  PAINT_EXPAND = VN_PAINT_EXPAND,
  PAINT_DITHER = VN_PAINT_DITHER,
  PAINT_GRAY = VN_PAINT_GRAY,
  PAINT_GRAY_INVERTED = VN_PAINT_GRAY_INVERTED,
  PAINT_VOTE = VN_PAINT_VOTE,
  PAINT_VOTE_INVERTED = VN_PAINT_VOTE_INVERTED
};
#endif
