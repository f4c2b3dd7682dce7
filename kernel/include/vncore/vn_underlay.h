/* A texture laid under a picture. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_UNDERLAY_H
#define VNCORE_VN_UNDERLAY_H

VN_BEGIN_C

enum {
  VN_UNDERLAY_TILE = 0,   /* the texture at its own size, repeated across and down */
  VN_UNDERLAY_STRETCH = 1 /* the texture resized to the destination's size */
};

/* Lays `underlay`, a bitmap of any depth, under the picture of `destination`: each gray level g of
 * the texture shifts the three channels of the pixel above it by g - 128, within 0 to 255. Picture
 * lines meet from the top, whatever the row orders. The destination keeps size, depth and palette;
 * up to 8 bits the rows are dithered back to its palette (Floyd, Steinberg), so that also a texture
 * of all 128 changes pixels there, and an open dithering run of the destination is closed. At 32
 * bits the fourth byte becomes 0, in all pixels that are written. Only the destination's region is
 * written; the texture counts from the picture's edge nevertheless. `underlay` stays as it is.
 *
 * The status callback hears the steps that prepare the texture, each from 0 to 100: the reduction
 * to gray, and under UNDERLAY_STRETCH the resizing, if the size differs. The work on the
 * destination is silent.
 * Returns OK, ERR_NO_BITMAP (null or without storage, on either side; a texture that cannot be
 * reduced to gray), ERR_INVALID_PARAMETER (`mode`), ERR_NO_MEMORY, a file error, or what the status
 * callback returned. A failure midway leaves the rows already written changed. */
VN_API Vn_Status VN_CALL Vn_UnderlayBitmap(Vn_BitmapHandle* destination, Vn_BitmapHandle* underlay,
                                           uint32_t mode);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_UNDERLAY_NAMES)
#define VNCORE_VN_UNDERLAY_NAMES
enum { UNDERLAY_TILE = VN_UNDERLAY_TILE, UNDERLAY_STRETCH = VN_UNDERLAY_STRETCH };
#endif
