/* GDI32 of the subset: objects, palettes, device contexts, bitmaps, DIBs, regions, figures, text. */
#ifndef VNCORE_PLATFORM_WIN32_GDI32_H
#define VNCORE_PLATFORM_WIN32_GDI32_H

#include "win32_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Objects. */
#define OBJ_PEN 1
#define OBJ_BRUSH 2
#define OBJ_DC 3
#define OBJ_PAL 5
#define OBJ_FONT 6
#define OBJ_BITMAP 7
#define OBJ_REGION 8
#define OBJ_MEMDC 10
#define HGDI_ERROR ((HGDIOBJ)(intptr_t)-1)
#define WHITE_BRUSH 0
#define BLACK_BRUSH 4
#define NULL_BRUSH 5
#define WHITE_PEN 6
#define BLACK_PEN 7
#define NULL_PEN 8
#define SYSTEM_FONT 13
#define DEFAULT_PALETTE 15
VNW_DECLARE(BOOL, DeleteObject, (HGDIOBJ object));
VNW_DECLARE(int, GetObjectA, (HANDLE object, int bytes, LPVOID result));
VNW_DECLARE(DWORD, GetObjectType, (HGDIOBJ object));
VNW_DECLARE(HGDIOBJ, GetStockObject, (int which));
VNW_DECLARE(HGDIOBJ, SelectObject, (HDC context, HGDIOBJ object));
VNW_DECLARE(HBRUSH, CreateSolidBrush, (COLORREF color));
VNW_DECLARE(HBRUSH, CreatePatternBrush, (HBITMAP pattern));
/* Solid pens alone, and the one that draws nothing: other styles fail. */
#define PS_SOLID 0
#define PS_NULL 5
VNW_DECLARE(HPEN, CreatePen, (int style, int width, COLORREF color));

/* Palettes. */
#define PC_RESERVED 0x01
#define PC_EXPLICIT 0x02
#define PC_NOCOLLAPSE 0x04
VNW_DECLARE(HPALETTE, CreatePalette, (const LOGPALETTE* palette));
VNW_DECLARE(UINT, GetPaletteEntries,
            (HPALETTE palette, UINT first, UINT count, LPPALETTEENTRY entries));
VNW_DECLARE(UINT, SetPaletteEntries,
            (HPALETTE palette, UINT first, UINT count, const PALETTEENTRY* entries));
VNW_DECLARE(BOOL, ResizePalette, (HPALETTE palette, UINT count));
VNW_DECLARE(UINT, GetNearestPaletteIndex, (HPALETTE palette, COLORREF color));
VNW_DECLARE(UINT, GetSystemPaletteEntries,
            (HDC context, UINT first, UINT count, LPPALETTEENTRY entries));
VNW_DECLARE(HPALETTE, SelectPalette, (HDC context, HPALETTE palette, BOOL forceBackground));
VNW_DECLARE(UINT, RealizePalette, (HDC context));

/* Device contexts. */
#define TECHNOLOGY 2
#define HORZSIZE 4
#define VERTSIZE 6
#define HORZRES 8
#define VERTRES 10
#define BITSPIXEL 12
#define PLANES 14
#define NUMCOLORS 24
#define RASTERCAPS 38
#define LOGPIXELSX 88
#define LOGPIXELSY 90
#define SIZEPALETTE 104
#define NUMRESERVED 106
#define COLORRES 108
#define RC_PALETTE 0x0100
#define DT_RASDISPLAY 1
#define DT_RASPRINTER 2
#define DT_METAFILE 5
VNW_DECLARE(int, GetDeviceCaps, (HDC context, int index));
VNW_DECLARE(HDC, CreateCompatibleDC, (HDC context));
VNW_DECLARE(BOOL, DeleteDC, (HDC context));
VNW_DECLARE(int, SaveDC, (HDC context));
VNW_DECLARE(BOOL, RestoreDC, (HDC context, int saved));
VNW_DECLARE(COLORREF, SetTextColor, (HDC context, COLORREF color));
VNW_DECLARE(COLORREF, SetBkColor, (HDC context, COLORREF color));
#define TRANSPARENT 1
#define OPAQUE 2
VNW_DECLARE(int, SetBkMode, (HDC context, int mode));

/* Printing. */
#define SP_ERROR (-1)
typedef struct _devicemodeA DEVMODEA;
typedef struct _DOCINFOA {
  int cbSize;
  LPCSTR lpszDocName;
  LPCSTR lpszOutput;
  LPCSTR lpszDatatype;
  DWORD fwType;
} DOCINFOA;
VNW_DECLARE(HDC, CreateDCA, (LPCSTR driver, LPCSTR device, LPCSTR port, const DEVMODEA* settings));
VNW_DECLARE(int, StartDocA, (HDC context, const DOCINFOA* document));
VNW_DECLARE(int, StartPage, (HDC context));
VNW_DECLARE(int, EndPage, (HDC context));
VNW_DECLARE(int, EndDoc, (HDC context));
VNW_DECLARE(int, AbortDoc, (HDC context));

/* Bitmaps and DIBs. */
#define BI_RGB 0
#define BI_BITFIELDS 3
#define DIB_RGB_COLORS 0
#define DIB_PAL_COLORS 1
#define SRCCOPY 0x00CC0020u
#define SRCPAINT 0x00EE0086u
#define SRCAND 0x008800C6u
#define SRCINVERT 0x00660046u
#define SRCERASE 0x00440328u
#define NOTSRCCOPY 0x00330008u
#define NOTSRCERASE 0x001100A6u
#define MERGECOPY 0x00C000CAu
#define MERGEPAINT 0x00BB0226u
#define PATCOPY 0x00F00021u
#define PATPAINT 0x00FB0A09u
#define PATINVERT 0x005A0049u
#define DSTINVERT 0x00550009u
#define BLACKNESS 0x00000042u
#define WHITENESS 0x00FF0062u
VNW_DECLARE(HBITMAP, CreateBitmap,
            (int width, int height, UINT planes, UINT bitsPerPixel, LPCVOID bits));
VNW_DECLARE(HBITMAP, CreateCompatibleBitmap, (HDC context, int width, int height));
VNW_DECLARE(HBITMAP, CreateDIBSection,
            (HDC context, const BITMAPINFO* info, UINT usage, LPVOID* bits, HANDLE section,
             DWORD offset));
VNW_DECLARE(UINT, GetDIBColorTable, (HDC context, UINT first, UINT count, RGBQUAD* colors));
VNW_DECLARE(UINT, SetDIBColorTable, (HDC context, UINT first, UINT count, const RGBQUAD* colors));
VNW_DECLARE(int, StretchDIBits,
            (HDC context, int x, int y, int width, int height, int srcX, int srcY, int srcWidth,
             int srcHeight, LPCVOID bits, const BITMAPINFO* info, UINT usage, DWORD rasterOp));
VNW_DECLARE(BOOL, BitBlt,
            (HDC context, int x, int y, int width, int height, HDC source, int srcX, int srcY,
             DWORD rasterOp));
VNW_DECLARE(BOOL, PatBlt, (HDC context, int x, int y, int width, int height, DWORD rasterOp));
VNW_DECLARE(int, GetDIBits,
            (HDC context, HBITMAP bitmap, UINT firstLine, UINT lines, LPVOID bits, BITMAPINFO* info,
             UINT usage));
VNW_DECLARE(COLORREF, GetPixel, (HDC context, int x, int y));

/* Points, lines and figures. */
#define R2_BLACK 1
#define R2_NOTMERGEPEN 2
#define R2_MASKNOTPEN 3
#define R2_NOTCOPYPEN 4
#define R2_MASKPENNOT 5
#define R2_NOT 6
#define R2_XORPEN 7
#define R2_NOTMASKPEN 8
#define R2_MASKPEN 9
#define R2_NOTXORPEN 10
#define R2_NOP 11
#define R2_MERGENOTPEN 12
#define R2_COPYPEN 13
#define R2_MERGEPENNOT 14
#define R2_MERGEPEN 15
#define R2_WHITE 16
VNW_DECLARE(int, SetROP2, (HDC context, int operation));
VNW_DECLARE(int, SetPolyFillMode, (HDC context, int fillRule));
VNW_DECLARE(COLORREF, SetPixel, (HDC context, int x, int y, COLORREF color));
VNW_DECLARE(BOOL, MoveToEx, (HDC context, int x, int y, LPPOINT before));
VNW_DECLARE(BOOL, LineTo, (HDC context, int x, int y));
VNW_DECLARE(BOOL, Polyline, (HDC context, const POINT* points, int count));
VNW_DECLARE(BOOL, Polygon, (HDC context, const POINT* points, int count));
VNW_DECLARE(BOOL, Rectangle, (HDC context, int left, int top, int right, int bottom));
VNW_DECLARE(BOOL, Ellipse, (HDC context, int left, int top, int right, int bottom));

/* Text, in UTF-8. Where no font can be had, all but the making of fonts fails. */
#define FW_NORMAL 400
#define FW_BOLD 700
#define DEFAULT_CHARSET 1
#define OUT_DEFAULT_PRECIS 0
#define CLIP_DEFAULT_PRECIS 0
#define DEFAULT_QUALITY 0
#define NONANTIALIASED_QUALITY 3
#define DEFAULT_PITCH 0
#define FF_DONTCARE 0
#define TA_LEFT 0
#define TA_RIGHT 2
#define TA_CENTER 6
#define TA_TOP 0
#define TA_BOTTOM 8
#define TA_BASELINE 24
#define TA_UPDATECP 1
VNW_DECLARE(HFONT, CreateFontA,
            (int height, int width, int escapement, int orientation, int weight, DWORD italic,
             DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision,
             DWORD clipPrecision, DWORD quality, DWORD pitchAndFamily, LPCSTR face));
VNW_DECLARE(UINT, SetTextAlign, (HDC context, UINT align));
VNW_DECLARE(int, GetTextFaceA, (HDC context, int bytes, LPSTR face));
VNW_DECLARE(BOOL, TextOutA, (HDC context, int x, int y, LPCSTR text, int bytes));
VNW_DECLARE(BOOL, GetTextExtentPoint32A, (HDC context, LPCSTR text, int bytes, SIZE* size));

/* Regions. */
#define RGN_ERROR 0
#define NULLREGION 1
#define SIMPLEREGION 2
#define COMPLEXREGION 3
#define RGN_AND 1
#define RGN_OR 2
#define RGN_XOR 3
#define RGN_DIFF 4
#define RGN_COPY 5
#define ALTERNATE 1
#define WINDING 2
#define RDH_RECTANGLES 1
VNW_DECLARE(HRGN, CreateRectRgn, (int left, int top, int right, int bottom));
VNW_DECLARE(HRGN, CreateRectRgnIndirect, (const RECT* rect));
VNW_DECLARE(HRGN, CreateEllipticRgnIndirect, (const RECT* rect));
VNW_DECLARE(HRGN, CreateRoundRectRgn,
            (int left, int top, int right, int bottom, int cornerWidth, int cornerHeight));
VNW_DECLARE(HRGN, CreatePolygonRgn, (const POINT* points, int count, int fillRule));
VNW_DECLARE(int, CombineRgn, (HRGN result, HRGN first, HRGN second, int mode));
VNW_DECLARE(BOOL, SetRectRgn, (HRGN region, int left, int top, int right, int bottom));
VNW_DECLARE(int, OffsetRgn, (HRGN region, int x, int y));
VNW_DECLARE(int, GetRgnBox, (HRGN region, LPRECT box));
VNW_DECLARE(DWORD, GetRegionData, (HRGN region, DWORD bytes, LPRGNDATA data));
VNW_DECLARE(BOOL, PtInRegion, (HRGN region, int x, int y));
VNW_DECLARE(BOOL, RectInRegion, (HRGN region, const RECT* rect));
VNW_DECLARE(int, SelectClipRgn, (HDC context, HRGN region));
VNW_DECLARE(BOOL, FrameRgn, (HDC context, HRGN region, HBRUSH brush, int width, int height));

#ifdef __cplusplus
}
#endif

#endif
