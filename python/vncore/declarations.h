/* The library's public interface as the package loads it. Written by declare.py from the headers, and
 * compared with them by a test. */
typedef void* Vn_HANDLE;
typedef Vn_HANDLE Vn_HGLOBAL;
typedef struct Vn_HWND_Tag* Vn_HWND;
typedef struct Vn_HDC_Tag* Vn_HDC;
typedef struct Vn_HPALETTE_Tag* Vn_HPALETTE;
typedef struct Vn_HBITMAP_Tag* Vn_HBITMAP;
typedef struct Vn_HRGN_Tag* Vn_HRGN;
typedef intptr_t (*Vn_FARPROC)(void);
typedef uint32_t Vn_COLORREF;
typedef uintptr_t Vn_UINT_PTR;
typedef struct Vn_POINT {
  int32_t x, y;
} Vn_POINT;
typedef struct Vn_RECT {
  int32_t left, top, right, bottom;
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
typedef int32_t Vn_Status;
enum {
  VN_OK = 1,
  VN_ERR_NO_MEMORY = -1,
  VN_ERR_NO_BITMAP = -2,
  VN_ERR_FILE_SEEK = -4,
  VN_ERR_FILE_WRITE = -5,
  VN_ERR_FILE_READ = -7,
  VN_ERR_EMPTY_BITMAP = -11,
  VN_ERR_INVALID_PARAMETER = -13,
  VN_ERR_UNSUPPORTED = -16,
  VN_ERR_BITS_PER_PIXEL = -27
};
typedef Vn_Status (*Vn_StatusCallBack)(int32_t percent);
struct Vn_DitherRecord;
struct Vn_RegionRecord;
enum {
  VN_FLAG_ALLOCATED = 0x0001,
  VN_FLAG_IN_MEMORY = 0x0002,
  VN_FLAG_ON_DISK = 0x0010,
  VN_FLAG_LOCKED = 0x0040,
  VN_FLAG_CARRIED_0080 = 0x0080,
  VN_FLAG_GRAY_PALETTE = 0x0100,
  VN_FLAG_OPTIMIZED_PALETTE = 0x0200,
  VN_FLAG_FIXED_PALETTE = 0x0400,
  VN_FLAG_CUSTOM_PALETTE = 0x0800,
  VN_FLAG_CARRIED_1000 = 0x1000,
  VN_FLAG_PALETTE_INDEXES = 0x4000
};
enum { VN_VIEW_TOP_FIRST = 0, VN_VIEW_BOTTOM_FIRST = 2 };
enum { VN_ORDER_RGB = 0, VN_ORDER_BGR = 1 };
typedef struct Vn_BitmapHandle {
  Vn_HANDLE Storage;
  uint8_t* Bits;
  uint32_t Reserved1[8];
  uint32_t CarriedTag;
  int32_t Width;
  int32_t Height;
  int32_t BitsPerPixel;
  uint32_t BytesPerLine;
  uint32_t CurrentOffset;
  uint32_t CurrentRow;
  uint32_t CarriedPair[2];
  uint32_t Flags;
  int32_t ColorCount;
  Vn_BITMAPINFOHEADER DibHeader;
  Vn_RGBQUAD DibColors[256];
  Vn_HPALETTE Palette;
  Vn_HPALETTE PaintPalette;
  uint32_t CarriedQuad[4];
  uint32_t ViewOrigin;
  uint32_t ColorOrder;
  uint32_t DataSize;
  uint32_t Reserved2;
  struct Vn_DitherRecord* DitherState;
  uint32_t DitherMethod;
  uint32_t Reserved3[13];
  struct Vn_RegionRecord* Region;
  uint32_t Reserved4;
  int32_t XResolution;
  int32_t YResolution;
  uint32_t Reserved5[4];
} Vn_BitmapHandle;
enum { VN_COPY_EMPTY = 1, VN_COPY_DIB = 2, VN_COPY_DDB = 4, VN_COPY_PALETTE = 8 };
Vn_Status Vn_CopyToClipboardExt(Vn_HWND window, Vn_BitmapHandle* bitmap, uint32_t flags);
int32_t Vn_CopyToClipboard(Vn_HWND window, Vn_BitmapHandle* bitmap);
int32_t Vn_CopyFromClipboard(Vn_HWND window, Vn_BitmapHandle* bitmap);
int32_t Vn_ClipboardReady(void);
Vn_Status Vn_ScreenCaptureBitmap(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* rect);
enum {
  VN_RES_FIXED_PALETTE = 0x01,
  VN_RES_OPTIMIZED_PALETTE = 0x02,
  VN_RES_ORDER_BGR = 0x04,
  VN_RES_SYSTEM_COLORS = 0x08,
  VN_RES_USER_PALETTE = 0x10,
  VN_RES_USER_MATCH_TABLE = 0x20
};
typedef Vn_Status (*Vn_RowCallBack)(Vn_BitmapHandle* target, uint8_t* rowBytes, uint32_t rows,
                                    Vn_UINT_PTR userData);
Vn_Status Vn_ColorResBitmap(Vn_BitmapHandle* bitmap, Vn_BitmapHandle* target, uint32_t bits,
                            uint32_t flags, const Vn_RGBQUAD* colors, uint32_t colorCount,
                            Vn_RowCallBack callback, Vn_UINT_PTR userData);
enum {
  VN_COMBINE_SRC = 0x0000,
  VN_COMBINE_SRC_NOT = 0x0001,
  VN_COMBINE_SRC_0 = 0x0002,
  VN_COMBINE_SRC_1 = 0x0003,
  VN_COMBINE_DST = 0x0000,
  VN_COMBINE_DST_NOT = 0x0010,
  VN_COMBINE_DST_0 = 0x0020,
  VN_COMBINE_DST_1 = 0x0030,
  VN_COMBINE_AND = 0x0000,
  VN_COMBINE_OR = 0x0100,
  VN_COMBINE_XOR = 0x0200,
  VN_COMBINE_ADD = 0x0300,
  VN_COMBINE_SUB_SRC = 0x0400,
  VN_COMBINE_SUB_DST = 0x0500,
  VN_COMBINE_MUL = 0x0600,
  VN_COMBINE_DIV_SRC = 0x0700,
  VN_COMBINE_DIV_DST = 0x0800,
  VN_COMBINE_AVERAGE = 0x0900,
  VN_COMBINE_MIN = 0x0A00,
  VN_COMBINE_MAX = 0x0B00,
  VN_COMBINE_RES = 0x0000,
  VN_COMBINE_RES_NOT = 0x1000,
  VN_COMBINE_RES_0 = 0x2000,
  VN_COMBINE_RES_1 = 0x3000
};
Vn_Status Vn_CombineBitmap(Vn_BitmapHandle* destination, int32_t x, int32_t y, int32_t width,
                           int32_t height, Vn_BitmapHandle* source, int32_t sourceX,
                           int32_t sourceY, uint32_t flags);
enum { VN_BPP_GRAY = 0 };
Vn_Status Vn_ConvertBuffer(void* buffer, uint32_t width, uint32_t srcBits, uint32_t dstBits,
                           uint32_t srcOrder, uint32_t dstOrder, const Vn_RGBQUAD* srcColors,
                           const Vn_RGBQUAD* dstColors);
uint32_t Vn_CalcConvertSize(uint32_t srcWidth, uint32_t srcBits, uint32_t dstWidth,
                            uint32_t dstBits);
uint32_t* Vn_CreateUserMatchTable(const Vn_RGBQUAD* colors, uint32_t count);
uint32_t* Vn_SetUserMatchTable(uint32_t* table);
Vn_Status Vn_FreeUserMatchTable(uint32_t* table);
enum { VN_DUP_ALLOCATE = 1, VN_DUP_PALETTE = 2, VN_DUP_REGION = 4 };
void Vn_CopyBitmapHandle(Vn_BitmapHandle* destination, const Vn_BitmapHandle* source);
Vn_Status Vn_DupBitmapNewDim(Vn_BitmapHandle* destination, Vn_BitmapHandle* source, uint32_t width,
                             uint32_t height, int32_t bitsPerPixel, uint32_t mode);
Vn_Status Vn_CopyBitmapData(Vn_BitmapHandle* destination, Vn_BitmapHandle* source);
Vn_Status Vn_CopyBitmap(Vn_BitmapHandle* destination, Vn_BitmapHandle* source);
Vn_Status Vn_CopyBitmapRect(Vn_BitmapHandle* destination, Vn_BitmapHandle* source, uint32_t left,
                            uint32_t top, uint32_t width, uint32_t height);
Vn_COLORREF Vn_GetPixelColor(Vn_BitmapHandle* bitmap, int32_t row, int32_t column);
Vn_Status Vn_PutPixelColor(Vn_BitmapHandle* bitmap, int32_t row, int32_t column, Vn_COLORREF color);
Vn_HDC Vn_CreateVornDC(Vn_BitmapHandle* bitmap);
int32_t Vn_DeleteVornDC(Vn_HDC hDC);
Vn_HGLOBAL Vn_ConvertToDIB(Vn_BitmapHandle* bitmap);
Vn_HGLOBAL Vn_ChangeToDIB(Vn_BitmapHandle* bitmap);
Vn_Status Vn_ConvertFromDIB(Vn_BitmapHandle* bitmap, const Vn_BITMAPINFO* info, const void* pixels);
Vn_Status Vn_ChangeFromDIB(Vn_BitmapHandle* bitmap, Vn_HGLOBAL dib);
Vn_HBITMAP Vn_ConvertToDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap);
Vn_HBITMAP Vn_ChangeToDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap);
Vn_Status Vn_ConvertFromDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap, Vn_HBITMAP object,
                            Vn_HPALETTE palette);
Vn_Status Vn_ChangeFromDDB(Vn_HDC hDC, Vn_BitmapHandle* bitmap, Vn_HBITMAP object,
                           Vn_HPALETTE palette);
enum {
  VN_DITHER_NONE = 0,
  VN_DITHER_FLOYD_STEINBERG = 1,
  VN_DITHER_STUCKI = 2,
  VN_DITHER_BURKES = 3,
  VN_DITHER_SIERRA = 4,
  VN_DITHER_STEVENSON_ARCE = 5,
  VN_DITHER_JARVIS = 6,
  VN_DITHER_ORDERED = 7,
  VN_DITHER_CLUSTERED = 8
};
Vn_Status Vn_StartDithering(Vn_BitmapHandle* bitmap, const Vn_RGBQUAD* colors, uint32_t count);
Vn_Status Vn_DitherLine(Vn_BitmapHandle* bitmap, const void* source, void* target);
Vn_Status Vn_StopDithering(Vn_BitmapHandle* bitmap);
enum {
  VN_EFFECT_PLAIN = 0,
  VN_EFFECT_ROWS_DOWN = 1,
  VN_EFFECT_ROWS_UP = 2,
  VN_EFFECT_COLUMNS_RIGHT = 3,
  VN_EFFECT_COLUMNS_LEFT = 4,
  VN_EFFECT_DISSOLVE_2 = 5,
  VN_EFFECT_DISSOLVE_4 = 6,
  VN_EFFECT_DISSOLVE_8 = 7,
  VN_EFFECT_DISSOLVE_16 = 8,
  VN_EFFECT_DISSOLVE_ROWS = 9,
  VN_EFFECT_DISSOLVE_COLUMNS = 10,
  VN_EFFECT_COLUMNS_OUT = 11,
  VN_EFFECT_ROWS_OUT = 12,
  VN_EFFECT_ROW_BLINDS_OUT = 13,
  VN_EFFECT_COLUMN_BLINDS_OUT = 14,
  VN_EFFECT_FRAMES_IN = 15,
  VN_EFFECT_FRAMES_OUT = 16,
  VN_EFFECT_FRAME_BLINDS_IN = 17,
  VN_EFFECT_FRAME_BLINDS_OUT = 18,
  VN_EFFECT_SPIRAL_IN = 19,
  VN_EFFECT_SPIRAL_OUT = 20,
  VN_EFFECT_ROWS_IN = 21,
  VN_EFFECT_COLUMNS_IN = 22,
  VN_EFFECT_COLUMN_BLINDS_IN = 23,
  VN_EFFECT_ROW_BLINDS_IN = 24,
  VN_EFFECT_COLUMN_BLINDS_RIGHT = 25,
  VN_EFFECT_COLUMN_BLINDS_LEFT = 26,
  VN_EFFECT_ROW_BLINDS_UP = 27,
  VN_EFFECT_ROW_BLINDS_DOWN = 28,
  VN_EFFECT_COUNT = 29
};
Vn_Status Vn_PaintDCEffect(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                           const Vn_RECT* sourceClip, const Vn_RECT* destination,
                           const Vn_RECT* destinationClip, uint32_t rasterOp, uint32_t effect);
Vn_Status Vn_PutBitmapRowSegments(Vn_BitmapHandle* bitmap, const void* source, uint32_t row,
                                  int32_t columnOffset, const int32_t* segments, int32_t count);
Vn_Status Vn_FillBitmap(Vn_BitmapHandle* bitmap, Vn_COLORREF color);
Vn_Status Vn_ClearBitmap(Vn_BitmapHandle* bitmap);
typedef struct Vn_VersionRecord {
  char Description[60];
  uint32_t Reserved;
  int32_t MajorVersion;
  int32_t MinorVersion;
  char BuildDate[16];
  char BuildTime[16];
} Vn_VersionRecord;
Vn_Status Vn_InitBitmap(Vn_BitmapHandle* bitmap, uint32_t width, uint32_t height,
                        int32_t bitsPerPixel);
Vn_Status Vn_VersionInfo(Vn_VersionRecord* info);
Vn_StatusCallBack Vn_SetStatusCallBack(Vn_StatusCallBack callback);
Vn_StatusCallBack Vn_GetStatusCallBack(void);
Vn_Status Vn_DefaultDithering(uint32_t method);
int32_t Vn_SetDefaultXResolution(int32_t dotsPerInch);
int32_t Vn_SetDefaultYResolution(int32_t dotsPerInch);
int32_t Vn_GetDefaultXResolution(void);
int32_t Vn_GetDefaultYResolution(void);
Vn_Status Vn_GrayScaleBitmap(Vn_BitmapHandle* bitmap);
enum {
  VN_SPACE_BGR = 0,
  VN_SPACE_YUV = 1,
  VN_SPACE_CMYK = 2,
  VN_SPACE_HSV = 3,
  VN_SPACE_HLS = 4,
  VN_SPACE_YIQ = 5,
  VN_SPACE_CMY = 6
};
Vn_Status Vn_ConvertColorSpace(const void* source, void* target, int32_t count,
                               uint32_t sourceSpace, uint32_t targetSpace);
enum { VN_HALFTONE_CLUSTERED = 0, VN_HALFTONE_ORDERED = 1 };
Vn_Status Vn_HalfToneBitmap(Vn_BitmapHandle* bitmap, uint32_t type);
Vn_Status Vn_HalfToneBitmapExt(Vn_BitmapHandle* bitmap, uint32_t type, int32_t angle);
Vn_Status Vn_FlipBitmap(Vn_BitmapHandle* bitmap);
Vn_Status Vn_ReverseBitmap(Vn_BitmapHandle* bitmap);
enum {
  VN_MODE_ORDERED_DITHER = 0x01,
  VN_MODE_SHORT_ROWS = 0x02,
  VN_MODE_DEVICE_INDEXES = 0x04,
  VN_MODE_DITHER = 0x08,
  VN_MODE_BITONAL_GRAY = 0x10,
  VN_MODE_CLUSTERED_MATRIX = 0x20,
  VN_MODE_BITONAL_VOTE = 0x40,
  VN_MODE_FIXED_PALETTE = 0x80
};
enum {
  VN_SRCCOPY = 0x00CC0020,
  VN_SRCPAINT = 0x00EE0086,
  VN_SRCAND = 0x008800C6,
  VN_SRCINVERT = 0x00660046,
  VN_SRCERASE = 0x00440328,
  VN_NOTSRCCOPY = 0x00330008,
  VN_NOTSRCERASE = 0x001100A6,
  VN_MERGECOPY = 0x00C000CA,
  VN_MERGEPAINT = 0x00BB0226,
  VN_PATCOPY = 0x00F00021,
  VN_PATPAINT = 0x00FB0A09,
  VN_PATINVERT = 0x005A0049,
  VN_DSTINVERT = 0x00550009,
  VN_BLACKNESS = 0x00000042,
  VN_WHITENESS = 0x00FF0062
};
enum {
  VN_PAINT_DIRECT = 0,
  VN_PAINT_EXPAND = 1,
  VN_PAINT_DITHER = 2,
  VN_PAINT_GRAY = 3,
  VN_PAINT_GRAY_INVERTED = 4,
  VN_PAINT_VOTE = 5,
  VN_PAINT_VOTE_INVERTED = 6
};
Vn_Status Vn_PaintDC(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                     const Vn_RECT* sourceClip, const Vn_RECT* destination,
                     const Vn_RECT* destinationClip, uint32_t rasterOp);
Vn_Status Vn_PaintDCBuffer(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                           const Vn_RECT* sourceClip, const Vn_RECT* destination,
                           const Vn_RECT* destinationClip, uint32_t rasterOp, void* rows,
                           int32_t firstRow, int32_t rowCount);
void Vn_GetDitherFlags(Vn_HDC hDC, Vn_BitmapHandle* bitmap, int32_t* deviceBits,
                       int32_t* paintKind);
Vn_HPALETTE Vn_CreatePaintPalette(Vn_HDC hDC, Vn_BitmapHandle* bitmap);
uint32_t Vn_SetDisplayMode(uint32_t mask, uint32_t value);
uint32_t Vn_GetDisplayMode(void);
Vn_HPALETTE Vn_CreatePalette(const Vn_RGBQUAD* colors, uint32_t count);
uint32_t Vn_GetPaletteSize(Vn_HPALETTE palette);
uint32_t Vn_GetPaletteEntries(Vn_HPALETTE palette, uint32_t first, uint32_t count,
                              Vn_RGBQUAD* colors);
uint32_t Vn_SetPaletteEntries(Vn_HPALETTE palette, uint32_t first, uint32_t count,
                              const Vn_RGBQUAD* colors);
Vn_HPALETTE Vn_CreateSystemPalette(void);
Vn_HPALETTE Vn_CreateGrayPalette(uint32_t bits);
Vn_HPALETTE Vn_DupPalette(Vn_HPALETTE palette);
Vn_HPALETTE Vn_CreateFixedPalette(uint32_t bits);
Vn_Status Vn_GetFixedPalette(Vn_RGBQUAD* colors, uint32_t bits);
const Vn_RGBQUAD* Vn_IntGetFixedPalette(uint32_t bits);
int32_t Vn_CompareHandleToPalette(Vn_HPALETTE palette, const Vn_RGBQUAD* colors, uint32_t count);
Vn_Status Vn_CreateBitmap(Vn_BitmapHandle* bitmap, int32_t request, uint32_t width, uint32_t height,
                          int32_t bitsPerPixel, uint32_t colorOrder, const Vn_RGBQUAD* colors,
                          uint32_t viewOrigin);
Vn_Status Vn_GetBitmapColors(Vn_BitmapHandle* bitmap, uint32_t first, uint32_t count,
                             Vn_RGBQUAD* colors);
Vn_Status Vn_PutBitmapColors(Vn_BitmapHandle* bitmap, int32_t first, int32_t count,
                             const Vn_RGBQUAD* colors);
Vn_Status Vn_CreatePaletteIndexes(Vn_BitmapHandle* bitmap);
int32_t Vn_CreatePaletteColors(Vn_BitmapHandle* bitmap);
int32_t Vn_CreateBitmapFixedPalette(Vn_BitmapHandle* bitmap);
int32_t Vn_CreateBitmapTruePalette(Vn_BitmapHandle* bitmap);
int32_t Vn_IsGrayScaleBitmap(Vn_BitmapHandle* bitmap);
const uint8_t* Vn_Get1BitOnTable(void);
Vn_HDC Vn_PrintBitmap(Vn_BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width, int32_t height,
                      int32_t last);
Vn_HDC Vn_PrintBitmapExt(Vn_HDC hDC, Vn_BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width,
                         int32_t height, int32_t last);
Vn_HDC Vn_PrintBitmapFast(Vn_HDC hDC, Vn_BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width,
                          int32_t height, int32_t last);
typedef struct Vn_RegionTransform {
  int32_t ViewOrigin;
  int32_t XScaleNumerator;
  int32_t XScaleDenominator;
  int32_t YScaleNumerator;
  int32_t YScaleDenominator;
  int32_t XOffset;
  int32_t YOffset;
} Vn_RegionTransform;
enum {
  VN_REGION_COMBINE_AND = 0,
  VN_REGION_COMBINE_REPLACE = 1,
  VN_REGION_COMBINE_NEW_MINUS_OLD = 2,
  VN_REGION_COMBINE_OLD_MINUS_NEW = 3,
  VN_REGION_COMBINE_OR = 4,
  VN_REGION_COMBINE_XOR = 5,
  VN_REGION_COMBINE_REPLACE_INVERTED = 6
};
enum { VN_REGION_FILL_WINDING = 0, VN_REGION_FILL_ALTERNATE = 1 };
Vn_Status Vn_SetBitmapRgnHandle(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                                Vn_HRGN region, uint32_t combine);
Vn_Status Vn_SetBitmapRgnRect(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                              const Vn_RECT* rect, uint32_t combine);
Vn_Status Vn_SetBitmapRgnEllipse(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                                 const Vn_RECT* box, uint32_t combine);
Vn_Status Vn_SetBitmapRgnPolygon(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                                 const Vn_POINT* points, int32_t count, uint32_t fillRule,
                                 uint32_t combine);
Vn_Status Vn_SetBitmapRgnRoundRect(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                                   const Vn_RECT* rect, int32_t cornerWidth, int32_t cornerHeight,
                                   uint32_t combine);
Vn_Status Vn_FreeBitmapRgn(Vn_BitmapHandle* bitmap);
Vn_Status Vn_OffsetBitmapRgn(Vn_BitmapHandle* bitmap, int32_t rows, int32_t columns);
Vn_Status Vn_GetBitmapRgnHandle(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                                Vn_HRGN* region);
Vn_Status Vn_GetBitmapRgnBounds(Vn_BitmapHandle* bitmap, const Vn_RegionTransform* transform,
                                Vn_RECT* bounds);
int32_t Vn_IsPtInBitmapRgn(const Vn_BitmapHandle* bitmap, int32_t row, int32_t column);
int32_t Vn_BitmapHasRgn(const Vn_BitmapHandle* bitmap);
Vn_Status Vn_GetBitmapRgnArea(const Vn_BitmapHandle* bitmap, uint32_t* area);
Vn_Status Vn_GetBitmapClipSegmentsMax(const Vn_BitmapHandle* bitmap, int32_t* maximum);
Vn_Status Vn_GetBitmapClipSegments(const Vn_BitmapHandle* bitmap, int32_t row, int32_t* segments,
                                   int32_t* count);
Vn_Status Vn_SetBitmapRgnColor(Vn_BitmapHandle* bitmap, Vn_COLORREF color, uint32_t combine);
Vn_Status Vn_PaintRgnDC(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                        const Vn_RECT* sourceClip, const Vn_RECT* destination,
                        const Vn_RECT* destinationClip, uint32_t rasterOp);
Vn_Status Vn_PaintRgnDCBuffer(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                              const Vn_RECT* sourceClip, const Vn_RECT* destination,
                              const Vn_RECT* destinationClip, uint32_t rasterOp, void* rows,
                              int32_t firstRow, int32_t rowCount);
Vn_Status Vn_PaintRgnDCEffect(Vn_HDC hDC, Vn_BitmapHandle* bitmap, const Vn_RECT* source,
                              const Vn_RECT* sourceClip, const Vn_RECT* destination,
                              const Vn_RECT* destinationClip, uint32_t rasterOp, uint32_t effect);
Vn_Status Vn_FrameBitmapRgn(Vn_HDC hDC, Vn_BitmapHandle* bitmap,
                            const Vn_RegionTransform* transform, uint32_t frame);
Vn_Status Vn_RotateBitmap(Vn_BitmapHandle* bitmap, int32_t angle, int32_t resize);
Vn_Status Vn_RotateBitmapFine(Vn_BitmapHandle* bitmap, int32_t angle, int32_t resize,
                              Vn_COLORREF fillColor);
Vn_Status Vn_IntRotateBitmapFine(Vn_BitmapHandle* bitmap, int32_t angle, int32_t resize,
                                 Vn_COLORREF fillColor, int32_t statusStart, int32_t statusEnd);
typedef struct Vn_ResizeState Vn_ResizeState;
Vn_Status Vn_StartResize(int32_t oldWidth, int32_t oldHeight, int32_t newWidth, int32_t newHeight,
                         Vn_ResizeState** state);
uint32_t Vn_Resize(uint8_t* buffer, uint32_t row, int32_t bitsPerPixel, uint32_t* outWidth,
                   uint32_t* outCount, Vn_ResizeState* state);
Vn_Status Vn_StopResize(Vn_ResizeState* state);
Vn_Status Vn_ResizeBitmap(Vn_BitmapHandle* source, Vn_BitmapHandle* destination);
Vn_Status Vn_SizeBitmap(Vn_BitmapHandle* bitmap, int32_t width, int32_t height);
Vn_Status Vn_ResampleBitmap(Vn_BitmapHandle* bitmap, int32_t width, int32_t height);
Vn_Status Vn_ShearBitmap(Vn_BitmapHandle* bitmap, int32_t angle, int32_t horizontal,
                         Vn_COLORREF fillColor);
enum { VN_STORAGE_AUTO = 1, VN_STORAGE_DISK = 128, VN_STORAGE_MEMORY = 256 };
Vn_Status Vn_AllocateBitmap(Vn_BitmapHandle* bitmap, int32_t request);
void Vn_FreeBitmap(Vn_BitmapHandle* bitmap);
Vn_Status Vn_FreeImage(Vn_BitmapHandle* bitmap, int32_t freeAttachments);
void Vn_AccessBitmap(Vn_BitmapHandle* bitmap);
void Vn_ReleaseBitmap(Vn_BitmapHandle* bitmap);
int32_t Vn_LockBitmap(Vn_BitmapHandle* bitmap);
void Vn_UnlockBitmap(Vn_BitmapHandle* bitmap, int32_t state);
Vn_Status Vn_ChangeBitmapHeight(Vn_BitmapHandle* bitmap, uint32_t newHeight);
int32_t Vn_GetBitmapRow(Vn_BitmapHandle* bitmap, void* buffer, uint32_t row, uint32_t count);
int32_t Vn_PutBitmapRow(Vn_BitmapHandle* bitmap, const void* buffer, uint32_t row, uint32_t count);
int32_t Vn_GetBitmapRowCol(Vn_BitmapHandle* bitmap, void* buffer, uint32_t row, uint32_t column,
                           uint32_t count);
int32_t Vn_PutBitmapRowCol(Vn_BitmapHandle* bitmap, const void* buffer, uint32_t row,
                           uint32_t column, uint32_t count);
void* Vn_OsAlloc(uint32_t size);
void* Vn_OsAllocInit(uint32_t size, uint32_t zeroFill);
void* Vn_OsReAlloc(void* block, uint32_t size);
int32_t Vn_OsFree(void* block);
Vn_HANDLE Vn_OsCreat(const char* name, uint32_t attributes);
int32_t Vn_OsGetTempName(char* buffer);
Vn_HANDLE Vn_OsOpen(const char* name, uint32_t access, uint32_t share);
int32_t Vn_OsRead(Vn_HANDLE file, void* buffer, uint32_t count);
int32_t Vn_OsWrite(Vn_HANDLE file, const void* buffer, uint32_t count);
uint32_t Vn_OsSeek(Vn_HANDLE file, int32_t offset, int32_t origin);
int32_t Vn_OsClose(Vn_HANDLE file);
int32_t Vn_OsDelete(const char* name);
typedef Vn_HANDLE (*Vn_OpenProc)(const char* name, uint32_t access, uint32_t share);
typedef int32_t (*Vn_ReadProc)(Vn_HANDLE file, void* buffer, uint32_t count);
typedef int32_t (*Vn_WriteProc)(Vn_HANDLE file, const void* buffer, uint32_t count);
typedef uint32_t (*Vn_SeekProc)(Vn_HANDLE file, int32_t offset, int32_t origin);
typedef int32_t (*Vn_CloseProc)(Vn_HANDLE file);
void Vn_RedirectIO(Vn_OpenProc open, Vn_ReadProc read, Vn_WriteProc write, Vn_SeekProc seek,
                   Vn_CloseProc close);
void Vn_FilterIO(Vn_OpenProc* open, Vn_ReadProc* read, Vn_WriteProc* write, Vn_SeekProc* seek,
                 Vn_CloseProc* close);
Vn_HANDLE Vn_RedirectedOpen(const char* name, uint32_t access, uint32_t share);
int32_t Vn_RedirectedRead(Vn_HANDLE file, void* buffer, uint32_t count);
int32_t Vn_RedirectedWrite(Vn_HANDLE file, const void* buffer, uint32_t count);
uint32_t Vn_RedirectedSeek(Vn_HANDLE file, int32_t offset, int32_t origin);
int32_t Vn_RedirectedClose(Vn_HANDLE file);
enum { VN_UNDERLAY_TILE = 0, VN_UNDERLAY_STRETCH = 1 };
Vn_Status Vn_UnderlayBitmap(Vn_BitmapHandle* destination, Vn_BitmapHandle* underlay, uint32_t mode);
