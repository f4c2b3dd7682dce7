/* USER32 of the subset: the screen's device context, filled rectangles, the clipboard. */
#ifndef VNCORE_PLATFORM_WIN32_USER32_H
#define VNCORE_PLATFORM_WIN32_USER32_H

#include "win32_types.h"

#ifdef __cplusplus
extern "C" {
#endif

VNW_DECLARE(HDC, GetDC, (HWND window));
VNW_DECLARE(int, ReleaseDC, (HWND window, HDC context));
VNW_DECLARE(int, FillRect, (HDC context, const RECT* rect, HBRUSH brush));

/* The clipboard. */
#define CF_BITMAP 2
#define CF_DIB 8
#define CF_PALETTE 9
VNW_DECLARE(BOOL, OpenClipboard, (HWND window));
VNW_DECLARE(BOOL, CloseClipboard, (void));
VNW_DECLARE(BOOL, EmptyClipboard, (void));
VNW_DECLARE(HANDLE, SetClipboardData, (UINT format, HANDLE data));
VNW_DECLARE(HANDLE, GetClipboardData, (UINT format));
VNW_DECLARE(BOOL, IsClipboardFormatAvailable, (UINT format));

#ifdef __cplusplus
}
#endif

#endif
