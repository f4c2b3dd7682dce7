/* Two bitmaps combined pixel by pixel. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_COMBINE_H
#define VNCORE_VN_COMBINE_H

VN_BEGIN_C

/* The flags of Vn_CombineBitmap: one value of each of the four groups, joined by |. In the formulas
 * d and s are the channel values of the two operands, m is the channel's maximum. A channel is a
 * byte at 8, 24 and 32 bits (all four bytes, m 255), a 5-bit field at 16 bits (m 31), a nibble at 4
 * bits (m 15). Up to 8 bits the values are palette indexes; no palette is looked at. At 1 bit there
 * is no arithmetic: ADD, AVERAGE and MAX are OR, MUL and MIN are AND, SUB_SRC is d AND NOT s,
 * SUB_DST is s AND NOT d, DIV_SRC is d, DIV_DST is s. */
enum {
  /* The source operand. */
  VN_COMBINE_SRC = 0x0000,     /* the source pixel */
  VN_COMBINE_SRC_NOT = 0x0001, /* its complement */
  VN_COMBINE_SRC_0 = 0x0002,   /* all zero bits */
  VN_COMBINE_SRC_1 = 0x0003,   /* all one bits */

  /* The destination operand. */
  VN_COMBINE_DST = 0x0000,     /* the destination pixel */
  VN_COMBINE_DST_NOT = 0x0010, /* its complement */
  VN_COMBINE_DST_0 = 0x0020,   /* all zero bits */
  VN_COMBINE_DST_1 = 0x0030,   /* all one bits */

  /* The operation. */
  VN_COMBINE_AND = 0x0000,     /* d and s, bitwise */
  VN_COMBINE_OR = 0x0100,      /* d or s, bitwise */
  VN_COMBINE_XOR = 0x0200,     /* d xor s, bitwise */
  VN_COMBINE_ADD = 0x0300,     /* d + s, at most m */
  VN_COMBINE_SUB_SRC = 0x0400, /* d - s, at least 0 */
  VN_COMBINE_SUB_DST = 0x0500, /* s - d, at least 0 */
  VN_COMBINE_MUL = 0x0600,     /* d * s / m, rounded down */
  VN_COMBINE_DIV_SRC = 0x0700, /* d * m / s, rounded down, at most m; m where s is 0 */
  VN_COMBINE_DIV_DST = 0x0800, /* s * m / d, rounded down, at most m; m where d is 0 */
  VN_COMBINE_AVERAGE = 0x0900, /* (d + s) / 2, rounded down */
  VN_COMBINE_MIN = 0x0A00,     /* the smaller of the two */
  VN_COMBINE_MAX = 0x0B00,     /* the larger of the two */

  /* The result. */
  VN_COMBINE_RES = 0x0000,     /* as computed */
  VN_COMBINE_RES_NOT = 0x1000, /* complemented */
  VN_COMBINE_RES_0 = 0x2000,   /* all zero bits */
  VN_COMBINE_RES_1 = 0x3000    /* all one bits */
};

/* Combines the rectangle of `source` at (sourceX, sourceY) into the one of `destination` at (x, y),
 * both `width` by `height`. Coordinates are columns and storage rows; ViewOrigin is not consulted.
 * The rectangle is cut to the bounds of both bitmaps' regions, and only pixels of the destination's
 * region are written. One bitmap may be both: its pixels are read before they are overwritten.
 *
 * A combination that does not depend on an operand is found by the rules of the 1-bit operations,
 * at every depth: COMBINE_ADD with COMBINE_SRC_0 leaves the destination as it is, and so does
 * COMBINE_AVERAGE, though an average would halve it. The divisions alone do take such an operand:
 * with COMBINE_SRC_0 or COMBINE_SRC_1, COMBINE_DIV_SRC divides by the pixels of the source, and
 * COMBINE_DIV_DST with COMBINE_DST_0 or COMBINE_DST_1 by those of the destination, unless the
 * operand divided is a constant as well. At 16 bits arithmetic clears the unused top bit, and
 * COMBINE_RES_NOT then sets it.
 *
 * `source` is not looked at, and may be null, where the result does not depend on it; otherwise it
 * must have the destination's depth. Failing accesses to a temporary file are not reported.
 * Returns OK, ERR_INVALID_PARAMETER (flags, bitmaps without storage, unlike depths), ERR_NO_MEMORY,
 * or what the status callback returned; stopped, the rows so far stay combined. */
VN_API Vn_Status VN_CALL Vn_CombineBitmap(Vn_BitmapHandle* destination, int32_t x, int32_t y,
                                          int32_t width, int32_t height, Vn_BitmapHandle* source,
                                          int32_t sourceX, int32_t sourceY, uint32_t flags);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_COMBINE_NAMES)
#define VNCORE_VN_COMBINE_NAMES
enum {
  COMBINE_SRC = VN_COMBINE_SRC,
  COMBINE_SRC_NOT = VN_COMBINE_SRC_NOT,
  COMBINE_SRC_0 = VN_COMBINE_SRC_0,
  COMBINE_SRC_1 = VN_COMBINE_SRC_1,
  COMBINE_DST = VN_COMBINE_DST,
  COMBINE_DST_NOT = VN_COMBINE_DST_NOT,
  COMBINE_DST_0 = VN_COMBINE_DST_0,
  COMBINE_DST_1 = VN_COMBINE_DST_1,
  COMBINE_AND = VN_COMBINE_AND,
  COMBINE_OR = VN_COMBINE_OR,
  COMBINE_XOR = VN_COMBINE_XOR,
  COMBINE_ADD = VN_COMBINE_ADD,
  COMBINE_SUB_SRC = VN_COMBINE_SUB_SRC,
  COMBINE_SUB_DST = VN_COMBINE_SUB_DST,
  COMBINE_MUL = VN_COMBINE_MUL,
  COMBINE_DIV_SRC = VN_COMBINE_DIV_SRC,
  COMBINE_DIV_DST = VN_COMBINE_DIV_DST,
  COMBINE_AVERAGE = VN_COMBINE_AVERAGE,
  COMBINE_MIN = VN_COMBINE_MIN,
  COMBINE_MAX = VN_COMBINE_MAX,
  COMBINE_RES = VN_COMBINE_RES,
  COMBINE_RES_NOT = VN_COMBINE_RES_NOT,
  COMBINE_RES_0 = VN_COMBINE_RES_0,
  COMBINE_RES_1 = VN_COMBINE_RES_1
};
#endif
