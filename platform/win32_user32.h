/* USER32 of the subset: the screen's device context. */
#ifndef VNCORE_PLATFORM_WIN32_USER32_H
#define VNCORE_PLATFORM_WIN32_USER32_H

#include "win32_types.h"

#ifdef __cplusplus
extern "C" {
#endif

VNW_DECLARE(HDC, GetDC, (HWND window));
VNW_DECLARE(int, ReleaseDC, (HWND window, HDC context));

#ifdef __cplusplus
}
#endif

#endif
