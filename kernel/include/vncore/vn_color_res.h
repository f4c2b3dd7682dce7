/* Colour resolution: a change of depth and palette. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_COLOR_RES_H
#define VNCORE_VN_COLOR_RES_H

VN_BEGIN_C

/* The low six bits of the flags of Vn_ColorResBitmap. 0 asks for an optimised palette up to 8 bits,
 * and for ORDER_RGB above. Only single values count, and the two combinations told. */
enum {
  VN_RES_FIXED_PALETTE = 0x01,     /* 1, 4, 8 bits: the fixed palette */
  VN_RES_OPTIMIZED_PALETTE = 0x02, /* 1, 4, 8 bits: a palette computed from the picture, as 0 */
  VN_RES_ORDER_BGR = 0x04,         /* 16, 24, 32 bits: ORDER_BGR */
  VN_RES_SYSTEM_COLORS = 0x08,     /* 1, 4, 8 bits: optimised, the system's reserved colours kept
                                      at both ends; also together with RES_OPTIMIZED_PALETTE */
  VN_RES_USER_PALETTE = 0x10,      /* 1, 4, 8 bits: the caller's colours */
  VN_RES_USER_MATCH_TABLE = 0x20   /* with RES_USER_PALETTE: by the thread's match table */
};

/* Puts a dithering method, 0 to 8, where the flags of Vn_ColorResBitmap have it. */
#define VN_RES_DITHER_METHOD(method) ((uint32_t)(method) << 16)

/* Receives each finished row of a conversion before it is stored: the record of the result (its
 * DibColors in colour form), the row, the number of rows (1) and the caller's data. `OK` means go
 * on; any other value undoes the conversion and becomes its result. */
typedef Vn_Status(VN_CALL* Vn_RowCallBack)(Vn_BitmapHandle* target, uint8_t* rowBytes,
                                           uint32_t rows, Vn_UINT_PTR userData);

/* Makes from `bitmap` a bitmap of `bits` (1, 4, 8, 16, 24, 32) in `target`, whose record is written
 * whole; `target` may be `bitmap` (the old pixels, palettes and region then go) or null (rows go to
 * `callback` alone). `flags`: see above; bits 16 to 23 are the dithering method.
 * `colors`: the palette under RES_USER_PALETTE; with an optimised palette null, or a table whose
 * flags bytes tell which entries are free (2), fixed (0) or fixed and not matched to (1).
 * `colorCount`: colours wanted, at most 2 to the power `bits`, which 0 stands for; `colors` holds
 * as many entries. Reports progress per row.
 * Returns OK, ERR_INVALID_PARAMETER (also for a null or empty `bitmap`), ERR_NO_MEMORY, a code of
 * the allocation, or what a callback returned. A stop by the status callback keeps the rows done so
 * far, and in place the old pixels are gone; every other failure leaves `bitmap` as it was, and
 * another `target` without storage. */
VN_API Vn_Status VN_CALL Vn_ColorResBitmap(Vn_BitmapHandle* bitmap, Vn_BitmapHandle* target,
                                           uint32_t bits, uint32_t flags, const Vn_RGBQUAD* colors,
                                           uint32_t colorCount, Vn_RowCallBack callback,
                                           Vn_UINT_PTR userData);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_COLOR_RES_NAMES)
#define VNCORE_VN_COLOR_RES_NAMES
typedef Vn_RowCallBack VnRowCallBack;
enum {
  RES_FIXED_PALETTE = VN_RES_FIXED_PALETTE,
  RES_OPTIMIZED_PALETTE = VN_RES_OPTIMIZED_PALETTE,
  RES_ORDER_BGR = VN_RES_ORDER_BGR,
  RES_SYSTEM_COLORS = VN_RES_SYSTEM_COLORS,
  RES_USER_PALETTE = VN_RES_USER_PALETTE,
  RES_USER_MATCH_TABLE = VN_RES_USER_MATCH_TABLE
};
#define RES_DITHER_METHOD(method) VN_RES_DITHER_METHOD(method)
#endif
