/* Palettes: colour tables, palette objects, the fixed palettes, and the palettes of bitmaps.
 *
 * A colour table is an array of at most 256 RGBQUAD (blue, green, red, flags byte). The flags byte
 * travels into and out of palette objects as peFlags. Larger counts are no contract:
 * Vn_CreatePalette refuses them, the others stop at 256. Palettes that a function returns belong to
 * the caller, who releases them with DeleteObject. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_PALETTE_H
#define VNCORE_VN_PALETTE_H

VN_BEGIN_C

/* A palette object of `count` entries of `colors`, or 0. */
VN_API Vn_HPALETTE VN_CALL Vn_CreatePalette(const Vn_RGBQUAD* colors, uint32_t count);
/* Entries in `palette`; 0 for a 0 handle. */
VN_API uint32_t VN_CALL Vn_GetPaletteSize(Vn_HPALETTE palette);
/* Reads up to `count` entries from `first` on into `colors`; returns the number that there were.
 * With 0 nothing is written. */
VN_API uint32_t VN_CALL Vn_GetPaletteEntries(Vn_HPALETTE palette, uint32_t first, uint32_t count,
                                             Vn_RGBQUAD* colors);
/* Overwrites entries; returns the platform's count of entries set. */
VN_API uint32_t VN_CALL Vn_SetPaletteEntries(Vn_HPALETTE palette, uint32_t first, uint32_t count,
                                             const Vn_RGBQUAD* colors);
/* The screen's system palette as a palette object, or 0 when the screen is no palette device. */
VN_API Vn_HPALETTE VN_CALL Vn_CreateSystemPalette(void);
/* A gray ramp of 2 to the power `bits` entries (0 counts as 8), entry k at k times (256 divided by
 * their number): below 8 bits it does not reach white. 0 on failure. */
VN_API Vn_HPALETTE VN_CALL Vn_CreateGrayPalette(uint32_t bits);
/* A new palette with the entries of `palette`; 0 if it has none or memory fails. */
VN_API Vn_HPALETTE VN_CALL Vn_DupPalette(Vn_HPALETTE palette);
/* A new object of the fixed palette: 2 colours for `bits` 0 and 1, 16 for 2 to 4, 256 for 5 to 8;
 * above 8 returns 0. */
VN_API Vn_HPALETTE VN_CALL Vn_CreateFixedPalette(uint32_t bits);
/* Copies the fixed palette for `bits` 1, 4, 8 (2, 16, 256 entries) into `colors`, or the 256-entry
 * gray ramp for 0. Returns OK or ERR_INVALID_PARAMETER. */
VN_API Vn_Status VN_CALL Vn_GetFixedPalette(Vn_RGBQUAD* colors, uint32_t bits);
/* The constant table of the fixed palette for `bits` 1, 4, 8, to be read in place; else null. */
VN_API const Vn_RGBQUAD* VN_CALL Vn_IntGetFixedPalette(uint32_t bits);
/* 1 if the first entries of `palette`, at most `count`, agree with `colors` in red, green and blue,
 * else 0. A palette that gives no entries, and so handle 0, compares equal. */
VN_API int32_t VN_CALL Vn_CompareHandleToPalette(Vn_HPALETTE palette, const Vn_RGBQUAD* colors,
                                                 uint32_t count);

/* Vn_InitBitmap, Vn_AllocateBitmap (`request`: a STORAGE_ value) and a palette in one call.
 * `bitsPerPixel` 0 asks for an 8-bit gray bitmap. Up to 8 bits the palette is `colors`, or the
 * fixed palette for null; from 16 bits on `colorOrder` is taken instead. A palette object that
 * could not be made is not reported. Returns OK, ERR_INVALID_PARAMETER for null, or a code of the
 * two. */
VN_API Vn_Status VN_CALL Vn_CreateBitmap(Vn_BitmapHandle* bitmap, int32_t request, uint32_t width,
                                         uint32_t height, int32_t bitsPerPixel, uint32_t colorOrder,
                                         const Vn_RGBQUAD* colors, uint32_t viewOrigin);
/* Reads `count` entries of the active palette. Returns OK, ERR_NO_BITMAP for null, or
 * ERR_INVALID_PARAMETER for a count of 0 or when there are fewer. */
VN_API Vn_Status VN_CALL Vn_GetBitmapColors(Vn_BitmapHandle* bitmap, uint32_t first, uint32_t count,
                                            Vn_RGBQUAD* colors);
/* Replaces entries of the bitmap's palette, which becomes a new object: PaintPalette when the whole
 * is then the fixed palette of the depth, else Palette, marked as custom. DibColors ends in index
 * form. Returns OK, ERR_NO_BITMAP or ERR_INVALID_PARAMETER (range, or more than 8 bits). */
VN_API Vn_Status VN_CALL Vn_PutBitmapColors(Vn_BitmapHandle* bitmap, int32_t first, int32_t count,
                                            const Vn_RGBQUAD* colors);
/* Writes the index form of DibColors (256 16-bit words 0 to 255) and sets FLAG_PALETTE_INDEXES.
 * Returns OK, or ERR_NO_BITMAP for null. */
VN_API Vn_Status VN_CALL Vn_CreatePaletteIndexes(Vn_BitmapHandle* bitmap);
/* Writes the colour form of DibColors from the active palette and clears FLAG_PALETTE_INDEXES.
 * Returns 1; 0 for null or more than 8 bits; 0, with the table zeroed, without an active
 * palette. */
VN_API int32_t VN_CALL Vn_CreatePaletteColors(Vn_BitmapHandle* bitmap);
/* Gives a record of 2, 16 or 256 colours a fixed palette in PaintPalette and the index form of
 * DibColors; the caller sets FLAG_FIXED_PALETTE, and an earlier PaintPalette is not deleted.
 * Returns 1; 0 for any other ColorCount, with nothing changed. */
VN_API int32_t VN_CALL Vn_CreateBitmapFixedPalette(Vn_BitmapHandle* bitmap);
/* Replaces Palette by a new object of the colours in DibColors, which must be in colour form, and
 * writes the index form. Returns 1. */
VN_API int32_t VN_CALL Vn_CreateBitmapTruePalette(Vn_BitmapHandle* bitmap);
/* 1: the active palette is a ramp rising from black to white; 2: falling from white to black;
 * 3: all gray but no such ramp; 0: anything else, and depths above 8. */
VN_API int32_t VN_CALL Vn_IsGrayScaleBitmap(Vn_BitmapHandle* bitmap);
/* The constant table of 256 bytes that counts the bits set in its index. */
VN_API const uint8_t* VN_CALL Vn_Get1BitOnTable(void);

VN_END_C

#endif
