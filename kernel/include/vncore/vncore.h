/* VNCORE32: the raster-image kernel of the VORNKIT imaging toolkit. The one header to include.
 *
 * Every function takes a caller-owned BitmapHandle where it works on a bitmap, and reports by its
 * return value: status functions return `OK` (1), a negative ERR_ code or the value that the status
 * callback returned; row functions return a byte count or a negative code; functions that make
 * platform objects return 0 for any failure.
 *
 * C99 and C++. Settings are per thread; a record is used by one thread at a time; no function
 * locks.
 */
#ifndef VNCORE_VNCORE_H
#define VNCORE_VNCORE_H

#include "vn_bitmap.h"
#include "vn_clipboard.h"
#include "vn_color_res.h"
#include "vn_combine.h"
#include "vn_convert.h"
#include "vn_copy.h"
#include "vn_device_context.h"
#include "vn_dib.h"
#include "vn_dither.h"
#include "vn_effect.h"
#include "vn_fill.h"
#include "vn_frame.h"
#include "vn_gray.h"
#include "vn_halftone.h"
#include "vn_mirror.h"
#include "vn_paint.h"
#include "vn_palette.h"
#include "vn_platform.h"
#include "vn_print.h"
#include "vn_region.h"
#include "vn_region_paint.h"
#include "vn_rotate.h"
#include "vn_scale.h"
#include "vn_shear.h"
#include "vn_status.h"
#include "vn_storage.h"
#include "vn_system.h"
#include "vn_underlay.h"

#endif
