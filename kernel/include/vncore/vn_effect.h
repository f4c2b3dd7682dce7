/* Painting piece by piece, in an order that the viewer can watch. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_EFFECT_H
#define VNCORE_VN_EFFECT_H

VN_BEGIN_C

/* Effects of Vn_PaintDCEffect. Blinds go over the picture in eight interlaced passes. */
enum {
  VN_EFFECT_PLAIN = 0,
  VN_EFFECT_ROWS_DOWN = 1,     /* rows from top to bottom */
  VN_EFFECT_ROWS_UP = 2,       /* rows from bottom to top */
  VN_EFFECT_COLUMNS_RIGHT = 3, /* columns from left to right */
  VN_EFFECT_COLUMNS_LEFT = 4,  /* columns from right to left */
  VN_EFFECT_DISSOLVE_2 = 5,    /* cells of 2 by 2 in pseudo-random order */
  VN_EFFECT_DISSOLVE_4 = 6,
  VN_EFFECT_DISSOLVE_8 = 7,
  VN_EFFECT_DISSOLVE_16 = 8,
  VN_EFFECT_DISSOLVE_ROWS = 9,     /* whole rows in pseudo-random order */
  VN_EFFECT_DISSOLVE_COLUMNS = 10, /* whole columns in pseudo-random order */
  VN_EFFECT_COLUMNS_OUT = 11,      /* columns from the centre to both sides */
  VN_EFFECT_ROWS_OUT = 12,         /* rows from the centre to top and bottom */
  VN_EFFECT_ROW_BLINDS_OUT = 13,
  VN_EFFECT_COLUMN_BLINDS_OUT = 14,
  VN_EFFECT_FRAMES_IN = 15,  /* frames from the edge to the centre */
  VN_EFFECT_FRAMES_OUT = 16, /* frames from the centre to the edge */
  VN_EFFECT_FRAME_BLINDS_IN = 17,
  VN_EFFECT_FRAME_BLINDS_OUT = 18,
  VN_EFFECT_SPIRAL_IN = 19,  /* a strip of 16 pixels, clockwise from the top left corner */
  VN_EFFECT_SPIRAL_OUT = 20, /* the same path from the centre out */
  VN_EFFECT_ROWS_IN = 21,    /* rows from top and bottom to the centre */
  VN_EFFECT_COLUMNS_IN = 22, /* columns from both sides to the centre */
  VN_EFFECT_COLUMN_BLINDS_IN = 23,
  VN_EFFECT_ROW_BLINDS_IN = 24,
  VN_EFFECT_COLUMN_BLINDS_RIGHT = 25,
  VN_EFFECT_COLUMN_BLINDS_LEFT = 26,
  VN_EFFECT_ROW_BLINDS_UP = 27,
  VN_EFFECT_ROW_BLINDS_DOWN = 28,
  VN_EFFECT_COUNT = 29
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
VN_API Vn_Status VN_CALL Vn_PaintDCEffect(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                                          const Vn_RECT* source, const Vn_RECT* sourceClip,
                                          const Vn_RECT* destination,
                                          const Vn_RECT* destinationClip, uint32_t rasterOp,
                                          uint32_t effect);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_EFFECT_NAMES)
#define VNCORE_VN_EFFECT_NAMES
enum {
  EFFECT_PLAIN = VN_EFFECT_PLAIN,
  EFFECT_ROWS_DOWN = VN_EFFECT_ROWS_DOWN,
  EFFECT_ROWS_UP = VN_EFFECT_ROWS_UP,
  EFFECT_COLUMNS_RIGHT = VN_EFFECT_COLUMNS_RIGHT,
  EFFECT_COLUMNS_LEFT = VN_EFFECT_COLUMNS_LEFT,
  EFFECT_DISSOLVE_2 = VN_EFFECT_DISSOLVE_2,
  EFFECT_DISSOLVE_4 = VN_EFFECT_DISSOLVE_4,
  EFFECT_DISSOLVE_8 = VN_EFFECT_DISSOLVE_8,
  EFFECT_DISSOLVE_16 = VN_EFFECT_DISSOLVE_16,
  EFFECT_DISSOLVE_ROWS = VN_EFFECT_DISSOLVE_ROWS,
  EFFECT_DISSOLVE_COLUMNS = VN_EFFECT_DISSOLVE_COLUMNS,
  EFFECT_COLUMNS_OUT = VN_EFFECT_COLUMNS_OUT,
  EFFECT_ROWS_OUT = VN_EFFECT_ROWS_OUT,
  EFFECT_ROW_BLINDS_OUT = VN_EFFECT_ROW_BLINDS_OUT,
  EFFECT_COLUMN_BLINDS_OUT = VN_EFFECT_COLUMN_BLINDS_OUT,
  EFFECT_FRAMES_IN = VN_EFFECT_FRAMES_IN,
  EFFECT_FRAMES_OUT = VN_EFFECT_FRAMES_OUT,
  EFFECT_FRAME_BLINDS_IN = VN_EFFECT_FRAME_BLINDS_IN,
  EFFECT_FRAME_BLINDS_OUT = VN_EFFECT_FRAME_BLINDS_OUT,
  EFFECT_SPIRAL_IN = VN_EFFECT_SPIRAL_IN,
  EFFECT_SPIRAL_OUT = VN_EFFECT_SPIRAL_OUT,
  EFFECT_ROWS_IN = VN_EFFECT_ROWS_IN,
  EFFECT_COLUMNS_IN = VN_EFFECT_COLUMNS_IN,
  EFFECT_COLUMN_BLINDS_IN = VN_EFFECT_COLUMN_BLINDS_IN,
  EFFECT_ROW_BLINDS_IN = VN_EFFECT_ROW_BLINDS_IN,
  EFFECT_COLUMN_BLINDS_RIGHT = VN_EFFECT_COLUMN_BLINDS_RIGHT,
  EFFECT_COLUMN_BLINDS_LEFT = VN_EFFECT_COLUMN_BLINDS_LEFT,
  EFFECT_ROW_BLINDS_UP = VN_EFFECT_ROW_BLINDS_UP,
  EFFECT_ROW_BLINDS_DOWN = VN_EFFECT_ROW_BLINDS_DOWN,
  EFFECT_COUNT = VN_EFFECT_COUNT
};
#endif
