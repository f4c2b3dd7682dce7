/* Line dithering: rows of any depth become 1-, 4- or 8-bit rows of indexes into a colour table, one
 * row after the other, so that a picture of any size passes through without being held whole. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_DITHER_H
#define VNCORE_VN_DITHER_H

VN_BEGIN_C

/* Dithering methods: BitmapHandle.DitherMethod, Vn_DefaultDithering. */
enum {
  VN_DITHER_NONE = 0,            /* the nearest colour of each pixel */
  VN_DITHER_FLOYD_STEINBERG = 1, /* error diffusion, 1 to 6 */
  VN_DITHER_STUCKI = 2,
  VN_DITHER_BURKES = 3,
  VN_DITHER_SIERRA = 4,
  VN_DITHER_STEVENSON_ARCE = 5,
  VN_DITHER_JARVIS = 6,   /* Jarvis, Judice, Ninke */
  VN_DITHER_ORDERED = 7,  /* threshold matrix with scattered dots */
  VN_DITHER_CLUSTERED = 8 /* threshold matrix that grows two dots */
};

/* Opens a run on `bitmap`, whose rows are to come. The bitmap needs no storage: its BitsPerPixel,
 * Width, ColorOrder, DitherMethod (read here only) and, up to 8 bits, its active palette are used.
 * `colors` is the target table of `count` entries, or null for the fixed palette of that size;
 * entries with bit 0 or 1 of their flags byte set are reserved: no pixel gets them. Target rows
 * have 1 bit for `count` up to 2, 4 bits up to 16, else 8. An earlier run must have been stopped.
 * Returns OK, ERR_INVALID_PARAMETER (count 0 or above 256, depth, method) or ERR_NO_MEMORY. */
VN_API Vn_Status VN_CALL Vn_StartDithering(Vn_BitmapHandle* bitmap, const Vn_RGBQUAD* colors,
                                           uint32_t count);
/* Dithers the next row: `source` holds Width pixels of the bitmap's own format, `target` receives
 * as many indexes; bits of a last byte beyond them stay. Rows come in the order in which they lie.
 * Both may be one buffer unless the target depth is above the source depth. Returns OK, or
 * ERR_INVALID_PARAMETER for a null pointer or without a run. */
VN_API Vn_Status VN_CALL Vn_DitherLine(Vn_BitmapHandle* bitmap, const void* source, void* target);
/* Ends the run after any number of rows and frees what it holds; nothing happens without one.
 * Returns OK. */
VN_API Vn_Status VN_CALL Vn_StopDithering(Vn_BitmapHandle* bitmap);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_DITHER_NAMES)
#define VNCORE_VN_DITHER_NAMES
enum {
  DITHER_NONE = VN_DITHER_NONE,
  DITHER_FLOYD_STEINBERG = VN_DITHER_FLOYD_STEINBERG,
  DITHER_STUCKI = VN_DITHER_STUCKI,
  DITHER_BURKES = VN_DITHER_BURKES,
  DITHER_SIERRA = VN_DITHER_SIERRA,
  DITHER_STEVENSON_ARCE = VN_DITHER_STEVENSON_ARCE,
  DITHER_JARVIS = VN_DITHER_JARVIS,
  DITHER_ORDERED = VN_DITHER_ORDERED,
  DITHER_CLUSTERED = VN_DITHER_CLUSTERED
};
#endif
