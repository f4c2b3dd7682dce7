/* Painting piece by piece, in an order that the viewer can watch. */
#ifndef VNCORE_VN_EFFECT_H
#define VNCORE_VN_EFFECT_H

#include "vn_bitmap.h"

VN_BEGIN_C

/* Effects of Vn_PaintDCEffect. Blinds go over the picture in eight interlaced passes. */
enum {
  EFFECT_PLAIN = 0,
  EFFECT_ROWS_DOWN = 1,     /* rows from top to bottom */
  EFFECT_ROWS_UP = 2,       /* rows from bottom to top */
  EFFECT_COLUMNS_RIGHT = 3, /* columns from left to right */
  EFFECT_COLUMNS_LEFT = 4,  /* columns from right to left */
  EFFECT_DISSOLVE_2 = 5,    /* cells of 2 by 2 in pseudo-random order */
  EFFECT_DISSOLVE_4 = 6,
  EFFECT_DISSOLVE_8 = 7,
  EFFECT_DISSOLVE_16 = 8,
  EFFECT_DISSOLVE_ROWS = 9,     /* whole rows in pseudo-random order */
  EFFECT_DISSOLVE_COLUMNS = 10, /* whole columns in pseudo-random order */
  EFFECT_COLUMNS_OUT = 11,      /* columns from the centre to both sides */
  EFFECT_ROWS_OUT = 12,         /* rows from the centre to top and bottom */
  EFFECT_ROW_BLINDS_OUT = 13,
  EFFECT_COLUMN_BLINDS_OUT = 14,
  EFFECT_FRAMES_IN = 15,  /* frames from the edge to the centre */
  EFFECT_FRAMES_OUT = 16, /* frames from the centre to the edge */
  EFFECT_FRAME_BLINDS_IN = 17,
  EFFECT_FRAME_BLINDS_OUT = 18,
  EFFECT_SPIRAL_IN = 19,  /* a strip of 16 pixels, clockwise from the top left corner */
  EFFECT_SPIRAL_OUT = 20, /* the same path from the centre out */
  EFFECT_ROWS_IN = 21,    /* rows from top and bottom to the centre */
  EFFECT_COLUMNS_IN = 22, /* columns from both sides to the centre */
  EFFECT_COLUMN_BLINDS_IN = 23,
  EFFECT_ROW_BLINDS_IN = 24,
  EFFECT_COLUMN_BLINDS_RIGHT = 25,
  EFFECT_COLUMN_BLINDS_LEFT = 26,
  EFFECT_ROW_BLINDS_UP = 27,
  EFFECT_ROW_BLINDS_DOWN = 28,
  EFFECT_COUNT = 29
};

/* Vn_PaintDC in pieces: each is painted on `hDC` where the whole paint would have put it, and shows
 * at once. Nothing waits; the thread's status callback paces the effect, or stops it between two
 * pieces. The plain paint and effects whose pieces lie outside `destinationClip` call it never.
 *
 * Dissolves and spirals show `source` and `sourceClip` as Vn_PaintDC does; rows, columns, blinds
 * and frames show the whole bitmap in `destination`, whatever these say. A picture that a paint
 * would dither by error diffusion is reduced once beforehand to the device's depth and its fixed
 * palette, as Vn_ColorResBitmap does it with Floyd and Steinberg's filter, and that is what shows.
 * A dissolve of more than 4194304 cells, up to twice as many, shows 24 of them only.
 *
 * Returns OK, ERR_INVALID_PARAMETER (also for a null bitmap or one without pixels), ERR_NO_MEMORY,
 * a code of the reduction, or what the callback returned. */
VN_API VnStatus VN_CALL Vn_PaintDCEffect(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                                         const RECT* sourceClip, const RECT* destination,
                                         const RECT* destinationClip, uint32_t rasterOp,
                                         uint32_t effect);

VN_END_C

#endif
