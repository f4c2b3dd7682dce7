/* Types and records of the Win32 subset, in Win32's names. Words have their Windows widths on every
 * machine; handles and pointers are native. What the public headers name as well is in types.h. */
#ifndef VNCORE_PLATFORM_WIN32_TYPES_H
#define VNCORE_PLATFORM_WIN32_TYPES_H

#include <stddef.h>
#include <stdint.h>

#include "types.h"

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
typedef Vn_UINT_PTR UINT_PTR;
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
typedef Vn_COLORREF COLORREF;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif
#define MAX_PATH 260

typedef Vn_HANDLE HANDLE;
typedef Vn_HGLOBAL HGLOBAL;
typedef void* HGDIOBJ;
typedef Vn_HWND HWND;
typedef Vn_HDC HDC;
typedef Vn_HPALETTE HPALETTE;
typedef Vn_HBITMAP HBITMAP;
typedef Vn_HRGN HRGN;
typedef struct Vn_HBRUSH_Tag* HBRUSH;
typedef struct Vn_HPEN_Tag* HPEN;
typedef struct Vn_HFONT_Tag* HFONT;
typedef struct Vn_HINSTANCE_Tag* HINSTANCE;
typedef HINSTANCE HMODULE;

#define INVALID_HANDLE_VALUE ((HANDLE)(intptr_t)-1)

typedef Vn_POINT POINT, *LPPOINT;

typedef struct tagSIZE {
  LONG cx, cy;
} SIZE;

typedef Vn_RECT RECT, *LPRECT;
typedef const RECT* LPCRECT;

typedef Vn_RGBQUAD RGBQUAD;
typedef Vn_BITMAPINFOHEADER BITMAPINFOHEADER;
typedef Vn_BITMAPINFO BITMAPINFO;

typedef struct tagPALETTEENTRY {
  BYTE peRed, peGreen, peBlue, peFlags;
} PALETTEENTRY, *LPPALETTEENTRY;

typedef struct tagLOGPALETTE {
  WORD palVersion;
  WORD palNumEntries;
  PALETTEENTRY palPalEntry[1];
} LOGPALETTE;

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
