/* The platform's types that the public headers of VNCORE32 name, each with the prefix `Vn_`.
 *
 * On Windows they are those of <windows.h>. Elsewhere they are defined here, words with their
 * Windows widths on every machine, handles and pointers native; win32_types.h gives them Win32's
 * names as well. C99 and C++.
 */
#ifndef VNCORE_PLATFORM_TYPES_H
#define VNCORE_PLATFORM_TYPES_H

#ifdef _WIN32

#include <windows.h>

typedef HANDLE Vn_HANDLE;
typedef HGLOBAL Vn_HGLOBAL;
typedef HWND Vn_HWND;
typedef HDC Vn_HDC;
typedef HPALETTE Vn_HPALETTE;
typedef HBITMAP Vn_HBITMAP;
typedef HRGN Vn_HRGN;
typedef FARPROC Vn_FARPROC;
typedef COLORREF Vn_COLORREF;
typedef UINT_PTR Vn_UINT_PTR;
typedef POINT Vn_POINT;
typedef RECT Vn_RECT;
typedef RGBQUAD Vn_RGBQUAD;
typedef BITMAPINFOHEADER Vn_BITMAPINFOHEADER;
typedef BITMAPINFO Vn_BITMAPINFO;

#else

#include <stdint.h>

typedef void* Vn_HANDLE;
typedef Vn_HANDLE Vn_HGLOBAL;
typedef struct Vn_HWND_Tag* Vn_HWND;
typedef struct Vn_HDC_Tag* Vn_HDC;
typedef struct Vn_HPALETTE_Tag* Vn_HPALETTE;
typedef struct Vn_HBITMAP_Tag* Vn_HBITMAP;
typedef struct Vn_HRGN_Tag* Vn_HRGN;
typedef intptr_t (*Vn_FARPROC)(void);

typedef uint32_t Vn_COLORREF; /* red in the low byte, then green, then blue */
typedef uintptr_t Vn_UINT_PTR;

typedef struct Vn_POINT {
  int32_t x, y;
} Vn_POINT;

typedef struct Vn_RECT {
  int32_t left, top, right, bottom; /* right and bottom are exclusive */
} Vn_RECT;

typedef struct Vn_RGBQUAD {
  uint8_t rgbBlue, rgbGreen, rgbRed, rgbReserved;
} Vn_RGBQUAD;

typedef struct Vn_BITMAPINFOHEADER {
  uint32_t biSize;
  int32_t biWidth;
  int32_t biHeight;
  uint16_t biPlanes;
  uint16_t biBitCount;
  uint32_t biCompression;
  uint32_t biSizeImage;
  int32_t biXPelsPerMeter;
  int32_t biYPelsPerMeter;
  uint32_t biClrUsed;
  uint32_t biClrImportant;
} Vn_BITMAPINFOHEADER;

typedef struct Vn_BITMAPINFO {
  Vn_BITMAPINFOHEADER bmiHeader;
  Vn_RGBQUAD bmiColors[1];
} Vn_BITMAPINFO;

#endif

#endif
