// The records at the library's boundary, pinned byte by byte. Callers compiled long ago rely on
// them. Offsets are written out, not computed, so that a field that moves is caught.
#include <cstddef>

#include <vncore/vncore.h>

#define VN_AT(record, field, offset) \
  static_assert(offsetof(record, field) == (offset), #record "." #field " moved")

// Records without pointers: the same on every machine.
static_assert(sizeof(VersionRecord) == 104);
VN_AT(VersionRecord, Description, 0);
VN_AT(VersionRecord, Reserved, 60);
VN_AT(VersionRecord, MajorVersion, 64);
VN_AT(VersionRecord, MinorVersion, 68);
VN_AT(VersionRecord, BuildDate, 72);
VN_AT(VersionRecord, BuildTime, 88);

static_assert(sizeof(RegionTransform) == 28);
VN_AT(RegionTransform, ViewOrigin, 0);
VN_AT(RegionTransform, XScaleNumerator, 4);
VN_AT(RegionTransform, XScaleDenominator, 8);
VN_AT(RegionTransform, YScaleNumerator, 12);
VN_AT(RegionTransform, YScaleDenominator, 16);
VN_AT(RegionTransform, XOffset, 20);
VN_AT(RegionTransform, YOffset, 24);

static_assert(sizeof(BITMAPINFOHEADER) == 40);
VN_AT(BITMAPINFOHEADER, biSize, 0);
VN_AT(BITMAPINFOHEADER, biWidth, 4);
VN_AT(BITMAPINFOHEADER, biHeight, 8);
VN_AT(BITMAPINFOHEADER, biPlanes, 12);
VN_AT(BITMAPINFOHEADER, biBitCount, 14);
VN_AT(BITMAPINFOHEADER, biCompression, 16);
VN_AT(BITMAPINFOHEADER, biSizeImage, 20);
VN_AT(BITMAPINFOHEADER, biXPelsPerMeter, 24);
VN_AT(BITMAPINFOHEADER, biYPelsPerMeter, 28);
VN_AT(BITMAPINFOHEADER, biClrUsed, 32);
VN_AT(BITMAPINFOHEADER, biClrImportant, 36);

static_assert(sizeof(RGBQUAD) == 4);
VN_AT(RGBQUAD, rgbBlue, 0);
VN_AT(RGBQUAD, rgbGreen, 1);
VN_AT(RGBQUAD, rgbRed, 2);
VN_AT(RGBQUAD, rgbReserved, 3);

static_assert(sizeof(PALETTEENTRY) == 4);
VN_AT(PALETTEENTRY, peRed, 0);
VN_AT(PALETTEENTRY, peGreen, 1);
VN_AT(PALETTEENTRY, peBlue, 2);
VN_AT(PALETTEENTRY, peFlags, 3);

static_assert(sizeof(RECT) == 16);
VN_AT(RECT, left, 0);
VN_AT(RECT, top, 4);
VN_AT(RECT, right, 8);
VN_AT(RECT, bottom, 12);

static_assert(sizeof(POINT) == 8);
VN_AT(POINT, x, 0);
VN_AT(POINT, y, 4);

// The colour table lies directly behind the header: the two are one BITMAPINFO everywhere.
static_assert(offsetof(BitmapHandle, DibColors) ==
              offsetof(BitmapHandle, DibHeader) + offsetof(BITMAPINFO, bmiColors));

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(BitmapHandle) == 1280);
VN_AT(BitmapHandle, Storage, 0);
VN_AT(BitmapHandle, Bits, 4);
VN_AT(BitmapHandle, Reserved1, 8);
VN_AT(BitmapHandle, CarriedTag, 40);
VN_AT(BitmapHandle, Width, 44);
VN_AT(BitmapHandle, Height, 48);
VN_AT(BitmapHandle, BitsPerPixel, 52);
VN_AT(BitmapHandle, BytesPerLine, 56);
VN_AT(BitmapHandle, CurrentOffset, 60);
VN_AT(BitmapHandle, CurrentRow, 64);
VN_AT(BitmapHandle, CarriedPair, 68);
VN_AT(BitmapHandle, Flags, 76);
VN_AT(BitmapHandle, ColorCount, 80);
VN_AT(BitmapHandle, DibHeader, 84);
VN_AT(BitmapHandle, DibColors, 124);
VN_AT(BitmapHandle, Palette, 1148);
VN_AT(BitmapHandle, PaintPalette, 1152);
VN_AT(BitmapHandle, CarriedQuad, 1156);
VN_AT(BitmapHandle, ViewOrigin, 1172);
VN_AT(BitmapHandle, ColorOrder, 1176);
VN_AT(BitmapHandle, DataSize, 1180);
VN_AT(BitmapHandle, Reserved2, 1184);
VN_AT(BitmapHandle, DitherState, 1188);
VN_AT(BitmapHandle, DitherMethod, 1192);
VN_AT(BitmapHandle, Reserved3, 1196);
VN_AT(BitmapHandle, Region, 1248);
VN_AT(BitmapHandle, Reserved4, 1252);
VN_AT(BitmapHandle, XResolution, 1256);
VN_AT(BitmapHandle, YResolution, 1260);
VN_AT(BitmapHandle, Reserved5, 1264);
#endif
