/* The public bitmap record and the values of its fields.
 *
 * A BitmapHandle is owned by the caller and lives wherever the caller put it; the library never
 * allocates one for a caller. It holds no pointer into itself, so plain assignment moves it. What a
 * bitmap owns outside the record (pixels, palette objects, region, dithering run) hangs on handles
 * and pointers in it. One thread uses a record at a time: row access moves a cache even to read.
 */
#include "vn_status.h"

#ifndef VNCORE_VN_BITMAP_H
#define VNCORE_VN_BITMAP_H

VN_BEGIN_C

struct Vn_DitherRecord;
struct Vn_RegionRecord;

/* BitmapHandle.Flags. No other bit is set or tested. */
enum {
  VN_FLAG_ALLOCATED = 0x0001,         /* the bitmap has storage */
  VN_FLAG_IN_MEMORY = 0x0002,         /* pixels addressable: mapped section or global memory */
  VN_FLAG_ON_DISK = 0x0010,           /* pixels in a temporary file, Storage is its handle */
  VN_FLAG_LOCKED = 0x0040,            /* memory storage is accessible through Bits */
  VN_FLAG_CARRIED_0080 = 0x0080,      /* the caller's; goes to duplicates */
  VN_FLAG_GRAY_PALETTE = 0x0100,      /* mark: the palette is a gray ramp */
  VN_FLAG_OPTIMIZED_PALETTE = 0x0200, /* mark: the palette came from colour reduction */
  VN_FLAG_FIXED_PALETTE = 0x0400,     /* PaintPalette is in force, not Palette */
  VN_FLAG_CUSTOM_PALETTE = 0x0800,    /* mark: the caller's palette, neither fixed nor gray */
  VN_FLAG_CARRIED_1000 = 0x1000,      /* the caller's; goes to derived bitmaps */
  VN_FLAG_PALETTE_INDEXES = 0x4000    /* DibColors holds the index form */
};

/* BitmapHandle.ViewOrigin: how storage rows lie in the picture. */
enum {
  VN_VIEW_TOP_FIRST = 0,   /* row 0 is the top line */
  VN_VIEW_BOTTOM_FIRST = 2 /* row 0 is the bottom line, the order of a DIB */
};

/* BitmapHandle.ColorOrder: channel order of pixels of 16 bits and more. */
enum {
  VN_ORDER_RGB = 0, /* 24, 32 bits: red first in memory; 16 bits: red in the low five bits */
  VN_ORDER_BGR = 1  /* 24, 32 bits: blue first in memory; 16 bits: blue in the low five bits */
};

typedef struct Vn_BitmapHandle {
  Vn_HANDLE Storage;             /* mapping, global memory or file handle, by kind of storage */
  uint8_t* Bits;                 /* mapped view; locked address or null; or the file's name */
  uint32_t Reserved1[8];         /* not touched; zero after Vn_InitBitmap */
  uint32_t CarriedTag;           /* the caller's; goes with the picture to derived bitmaps */
  int32_t Width;                 /* pixels in a row */
  int32_t Height;                /* rows */
  int32_t BitsPerPixel;          /* 1, 4, 8, 16, 24 or 32 */
  uint32_t BytesPerLine;         /* bytes from row to row, a multiple of 4 */
  uint32_t CurrentOffset;        /* byte offset of row CurrentRow: the row-position cache */
  uint32_t CurrentRow;           /* row that CurrentOffset belongs to */
  uint32_t CarriedPair[2];       /* as CarriedTag */
  uint32_t Flags;                /* FLAG_ bits */
  int32_t ColorCount;            /* 2 to the power BitsPerPixel up to 8 bits, else 0 */
  Vn_BITMAPINFOHEADER DibHeader; /* with DibColors a BITMAPINFO that describes the bitmap */
  Vn_RGBQUAD DibColors[256];     /* colours, or 256 16-bit indexes (FLAG_PALETTE_INDEXES) */
  Vn_HPALETTE Palette;           /* the palette proper, up to 8 bits */
  Vn_HPALETTE PaintPalette;      /* the palette in force under FLAG_FIXED_PALETTE */
  uint32_t CarriedQuad[4];       /* as CarriedTag */
  uint32_t ViewOrigin;           /* VIEW_ value */
  uint32_t ColorOrder;           /* ORDER_ value */
  uint32_t DataSize;             /* BytesPerLine times Height, bytes */
  uint32_t Reserved2;
  struct Vn_DitherRecord* DitherState; /* the open dithering run, or null */
  uint32_t DitherMethod;               /* dithering method, 0 to 8 */
  uint32_t Reserved3[13];
  struct Vn_RegionRecord* Region; /* the region, or null for the whole bitmap */
  uint32_t Reserved4;
  int32_t XResolution; /* dots per inch across */
  int32_t YResolution; /* dots per inch down */
  uint32_t Reserved5[4];
} Vn_BitmapHandle;

VN_END_C

#endif

#if !defined(VNCORE_PREFIXED) && !defined(VNCORE_VN_BITMAP_NAMES)
#define VNCORE_VN_BITMAP_NAMES
typedef struct Vn_DitherRecord DitherRecord;
typedef struct Vn_RegionRecord RegionRecord;
typedef Vn_BitmapHandle BitmapHandle;
enum {
  FLAG_ALLOCATED = VN_FLAG_ALLOCATED,
  FLAG_IN_MEMORY = VN_FLAG_IN_MEMORY,
  FLAG_ON_DISK = VN_FLAG_ON_DISK,
  FLAG_LOCKED = VN_FLAG_LOCKED,
  FLAG_CARRIED_0080 = VN_FLAG_CARRIED_0080,
  FLAG_GRAY_PALETTE = VN_FLAG_GRAY_PALETTE,
  FLAG_OPTIMIZED_PALETTE = VN_FLAG_OPTIMIZED_PALETTE,
  FLAG_FIXED_PALETTE = VN_FLAG_FIXED_PALETTE,
  FLAG_CUSTOM_PALETTE = VN_FLAG_CUSTOM_PALETTE,
  FLAG_CARRIED_1000 = VN_FLAG_CARRIED_1000,
  FLAG_PALETTE_INDEXES = VN_FLAG_PALETTE_INDEXES
};
enum { VIEW_TOP_FIRST = VN_VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST = VN_VIEW_BOTTOM_FIRST };
enum { ORDER_RGB = VN_ORDER_RGB, ORDER_BGR = VN_ORDER_BGR };
#endif
