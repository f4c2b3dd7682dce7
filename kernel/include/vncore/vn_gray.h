/* Gray scale, and conversion between colour spaces. */
#ifndef VNCORE_VN_GRAY_H
#define VNCORE_VN_GRAY_H

#include "vn_bitmap.h"

VN_BEGIN_C

/* Turns a bitmap of any depth into an 8-bit bitmap with a rising gray ramp, in which a pixel value
 * is the gray level (2 red + 5 green + blue + 4) / 8. Storage is chosen anew by STORAGE_AUTO;
 * region, row order, resolution and the caller's fields stay. Reports progress per row.
 * Returns OK, ERR_NO_BITMAP (also for a palette bitmap without a usable palette, and for a record
 * whose rows are too short for its pixels), ERR_NO_MEMORY, or what the status callback returned. On
 * anything but OK the bitmap is as it was. */
VN_API VnStatus VN_CALL Vn_GrayScaleBitmap(BitmapHandle* bitmap);

/* Colour spaces of Vn_ConvertColorSpace. */
enum {
  SPACE_BGR = 0,  /* 3 bytes: blue, green, red; every conversion goes through it */
  SPACE_YUV = 1,  /* 3 signed words: Y, U (blue minus Y), V (red minus Y); full scale is 16384 */
  SPACE_CMYK = 2, /* 4 bytes, black pulled out in full */
  SPACE_HSV = 3,  /* 3 bytes; the hue circle has 256 steps */
  SPACE_HLS = 4,  /* 3 bytes: hue, lightness, saturation; the hue circle has 255 steps */
  SPACE_YIQ = 5,  /* 3 signed words; full scale is 16384 */
  SPACE_CMY = 6   /* 3 bytes */
};

/* Converts `count` pixels from `source` to `target`, which are apart and hold that many pixels of
 * their space; words are stored as the machine's 16-bit integers. A count of 0 or below converts
 * nothing. Results that do not fit a byte wrap, except from CMYK, which clamps.
 * Returns OK, or ERR_INVALID_PARAMETER for an unknown space, with `target` not written. */
VN_API VnStatus VN_CALL Vn_ConvertColorSpace(const void* source, void* target, int32_t count,
                                             uint32_t sourceSpace, uint32_t targetSpace);

VN_END_C

#endif
