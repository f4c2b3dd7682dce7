/* The platform as the rooms of VNCORE32 see it: the Win32 subset that the library uses.
 *
 * On Windows this is <windows.h>. Elsewhere it declares exactly the types, constants and functions
 * that the library needs; platform/headless/ implements them in one process. Source names are
 * Win32's own. The symbols behind them carry the prefix `vnw_`, so that nothing collides in a
 * user's process with another implementation of the same names.
 *
 * Usable from C99 and C++. Includes nothing of the rooms.
 */
#ifndef VNCORE_PLATFORM_WIN32_H
#define VNCORE_PLATFORM_WIN32_H

#ifdef _WIN32
#include <windows.h>
#else
#include "win32_gdi32.h"
#include "win32_kernel32.h"
#include "win32_types.h"
#include "win32_user32.h"
#endif

#endif
