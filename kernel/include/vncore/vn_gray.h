/* Gray scale, and conversion between colour spaces. */
#include "vn_bitmap.h"

#ifndef VNCORE_VN_GRAY_H
#define VNCORE_VN_GRAY_H

VN_BEGIN_C

/* Turns a bitmap of any depth into an 8-bit bitmap with a rising gray ramp, in which a pixel value
 * is the gray level (2 red + 5 green + blue + 4) / 8. Storage is chosen anew by STORAGE_AUTO;
 * region, row order, resolution and the caller's fields stay. Reports progress per row.
 * Returns OK, ERR_NO_BITMAP (also for a palette bitmap without a usable palette, and for a record
 * whose rows are too short for its pixels), ERR_NO_MEMORY, or what the status callback returned. On
 * anything but OK the bitmap is as it was. */
VN_API Vn_Status VN_CALL Vn_GrayScaleBitmap(Vn_BitmapHandle* bitmap);

/* Colour spaces of Vn_ConvertColorSpace. */
enum {
  VN_SPACE_BGR = 0,  /* 3 bytes: blue, green, red; every conversion goes through it */
  VN_SPACE_YUV = 1,  /* 3 signed words: Y, U (blue minus Y), V (red minus Y); full scale is 16384 */
  VN_SPACE_CMYK = 2, /* 4 bytes, black pulled out in full */
  VN_SPACE_HSV = 3,  /* 3 bytes; the hue circle has 256 steps */
  VN_SPACE_HLS = 4,  /* 3 bytes: hue, lightness, saturation; the hue circle has 255 steps */
  VN_SPACE_YIQ = 5,  /* 3 signed words; full scale is 16384 */
  VN_SPACE_CMY = 6   /* 3 bytes */
};

/* Converts `count` pixels from `source` to `target`, which are apart and hold that many pixels of
 * their space; words are stored as the machine's 16-bit integers. A count of 0 or below converts
 * nothing. Results that do not fit a byte wrap, except from CMYK, which clamps.
 * Returns OK, or ERR_INVALID_PARAMETER for an unknown space, with `target` not written. */
VN_API Vn_Status VN_CALL Vn_ConvertColorSpace(const void* source, void* target, int32_t count,
                                              uint32_t sourceSpace, uint32_t targetSpace);

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_GRAY_NAMES)
#define VNCORE_VN_GRAY_NAMES
enum {
  SPACE_BGR = VN_SPACE_BGR,
  SPACE_YUV = VN_SPACE_YUV,
  SPACE_CMYK = VN_SPACE_CMYK,
  SPACE_HSV = VN_SPACE_HSV,
  SPACE_HLS = VN_SPACE_HLS,
  SPACE_YIQ = VN_SPACE_YIQ,
  SPACE_CMY = VN_SPACE_CMY
};
#endif
