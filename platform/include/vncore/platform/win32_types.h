/* Types and records of the Win32 subset. Words have their Windows widths on every machine; handles
 * and pointers are native. */
#ifndef VNCORE_PLATFORM_WIN32_TYPES_H
#define VNCORE_PLATFORM_WIN32_TYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define WINAPI
#define CALLBACK
#define APIENTRY
#define CONST const

/* Declares a platform function: source name as on Windows, symbol with the prefix `vnw_`. */
#define VNW_DECLARE(result, name, arguments) \
  __attribute__((visibility("default"))) result WINAPI name arguments __asm__("vnw_" #name)

typedef int BOOL;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef int32_t INT;
typedef uint32_t UINT;
typedef int32_t LONG;
typedef uint32_t ULONG;
typedef size_t SIZE_T;
typedef uintptr_t UINT_PTR;
typedef uintptr_t ULONG_PTR;
typedef ULONG_PTR DWORD_PTR;
typedef char CHAR;
typedef void* LPVOID;
typedef void VOID;
typedef const void* LPCVOID;
typedef DWORD* LPDWORD;
typedef LONG* PLONG;
typedef char* LPSTR;
typedef const char* LPCSTR;
typedef DWORD COLORREF;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif
#define MAX_PATH 260

typedef void* HANDLE;
typedef void* HGDIOBJ;
typedef HANDLE HGLOBAL;
#define VNW_DECLARE_HANDLE(name) typedef struct name##__* name
VNW_DECLARE_HANDLE(HINSTANCE);
VNW_DECLARE_HANDLE(HWND);
VNW_DECLARE_HANDLE(HDC);
VNW_DECLARE_HANDLE(HPALETTE);
VNW_DECLARE_HANDLE(HBITMAP);
VNW_DECLARE_HANDLE(HRGN);
VNW_DECLARE_HANDLE(HBRUSH);
typedef HINSTANCE HMODULE;

#define INVALID_HANDLE_VALUE ((HANDLE)(intptr_t)-1)

typedef struct tagPOINT {
  LONG x, y;
} POINT, *LPPOINT;

typedef struct tagSIZE {
  LONG cx, cy;
} SIZE;

typedef struct tagRECT {
  LONG left, top, right, bottom;
} RECT, *LPRECT;
typedef const RECT* LPCRECT;

typedef struct tagRGBQUAD {
  BYTE rgbBlue, rgbGreen, rgbRed, rgbReserved;
} RGBQUAD;

typedef struct tagPALETTEENTRY {
  BYTE peRed, peGreen, peBlue, peFlags;
} PALETTEENTRY, *LPPALETTEENTRY;

typedef struct tagLOGPALETTE {
  WORD palVersion;
  WORD palNumEntries;
  PALETTEENTRY palPalEntry[1];
} LOGPALETTE;

typedef struct tagBITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
} BITMAPINFOHEADER;

typedef struct tagBITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
} BITMAPINFO;

typedef struct tagBITMAP {
  LONG bmType;
  LONG bmWidth;
  LONG bmHeight;
  LONG bmWidthBytes;
  WORD bmPlanes;
  WORD bmBitsPixel;
  LPVOID bmBits;
} BITMAP;

typedef struct _RGNDATAHEADER {
  DWORD dwSize;
  DWORD iType;
  DWORD nCount;
  DWORD nRgnSize;
  RECT rcBound;
} RGNDATAHEADER;

typedef struct _RGNDATA {
  RGNDATAHEADER rdh;
  char Buffer[1];
} RGNDATA, *LPRGNDATA;

#define RGB(r, g, b) ((COLORREF)((BYTE)(r) | ((DWORD)(BYTE)(g) << 8) | ((DWORD)(BYTE)(b) << 16)))
#define GetRValue(c) ((BYTE)(c))
#define GetGValue(c) ((BYTE)((c) >> 8))
#define GetBValue(c) ((BYTE)((c) >> 16))
#define CLR_INVALID 0xFFFFFFFFu

#ifdef __cplusplus
}
#endif

#endif
