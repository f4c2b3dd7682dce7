/* VNCORE32: the raster-image kernel of the VORNKIT imaging toolkit. The one header to include.
 *
 * Every function takes a caller-owned BitmapHandle where it works on a bitmap, and reports by its
 * return value: status functions return `OK` (1), a negative ERR_ code or the value that the status
 * callback returned; row functions return a byte count or a negative code; functions that make
 * platform objects return 0 for any failure.
 *
 * C99 and C++. Settings are per thread; a record is used by one thread at a time; no function
 * locks.
 *
 * Names. Everything is declared with a prefix, `Vn_` for functions and types, `VN_` for constants
 * and macros: Vn_BitmapHandle, VN_OK. Types and constants then get short names, BitmapHandle and OK,
 * which comments use, and <vncore/platform/win32.h> brings Win32's own. A source that defines
 * VNCORE_PREFIXED before the include gets the prefixed names alone, so that this header stands
 * beside any other library's, in either order (on Windows, <windows.h> is included all the same).
 * Both names mean the same thing, and a source may see both: who includes this header again without
 * VNCORE_PREFIXED gets the short names then. That is why no header here is guarded as a whole.
 */
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
#include "vn_version.h"
