// Random bitmaps, and their folds.
#include "tests/cases/bitmaps.h"

#include <cstdio>

namespace vn::cases {

Shape RandomShape(Case& test, int32_t maxWidth, int32_t maxHeight) {
  Shape shape;
  shape.width = static_cast<uint32_t>(test.Pick(1, maxWidth));
  shape.height = static_cast<uint32_t>(test.Pick(1, maxHeight));
  shape.bits = test.OneOf(kDepths);
  shape.order = test.OneOf({ORDER_RGB, ORDER_BGR});
  shape.origin = test.OneOf({VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST});
  shape.storage = test.OneOf({STORAGE_AUTO, STORAGE_DISK, STORAGE_MEMORY});
  test.Note("%ux%u, %d bits, order %u, origin %u, storage %d", shape.width, shape.height,
            shape.bits, shape.order, shape.origin, shape.storage);
  return shape;
}

std::vector<RGBQUAD> RandomColors(Case& test, size_t count) {
  std::vector<RGBQUAD> colors(count);
  const int32_t kind = test.Pick(0, 5);
  for (size_t i = 0; i < count; ++i) {
    RGBQUAD& color = colors[i];
    test.random.Fill(&color, sizeof color);
    color.rgbReserved = kind == 0 ? color.rgbReserved & 7 : 0;
    if (kind == 1) color.rgbRed = color.rgbGreen = color.rgbBlue;
    if (kind == 2 && i && test.random.Chance(3)) color = colors[i - 1];
    if (kind == 3 || kind == 4) {
      const auto level = static_cast<BYTE>(i * 255 / (count - 1));
      color.rgbRed = color.rgbGreen = color.rgbBlue =
          static_cast<BYTE>(kind == 3 ? level : 255 - level);
    }
  }
  return colors;
}

namespace {

void FillRandom(Case& test, BitmapHandle* bitmap) {
  std::vector<uint8_t> bytes(bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    test.random.Fill(bytes.data(), bytes.size());
    Vn_PutBitmapRow(bitmap, bytes.data(), row, bitmap->BytesPerLine);
  }
  Vn_UnlockBitmap(bitmap, state);
}

}  // namespace

Bitmap::Bitmap(Case& test, const Shape& shape) {
  std::vector<RGBQUAD> colors;
  if (shape.bits <= 8 && !test.random.Chance(4)) {
    colors = RandomColors(test, size_t{1} << shape.bits);
    // Wine finds the pixel of an explicit entry by its colour, where Windows takes the number in
    // it.
    for (RGBQUAD& color : colors)
      color.rgbReserved &= static_cast<BYTE>(~PC_EXPLICIT);
  }
  const VnStatus status =
      Vn_CreateBitmap(get(), shape.storage, shape.width, shape.height, shape.bits, shape.order,
                      colors.empty() ? nullptr : colors.data(), shape.origin);
  test.Fold("Vn_CreateBitmap", status);
  if (status == OK) FillRandom(test, get());
}

void FoldRecord(Case& test, BitmapHandle* bitmap) {
  test.Fold("Width", bitmap->Width);
  test.Fold("Height", bitmap->Height);
  test.Fold("BitsPerPixel", bitmap->BitsPerPixel);
  test.Fold("BytesPerLine", bitmap->BytesPerLine);
  test.Fold("Flags", bitmap->Flags & ~static_cast<uint32_t>(FLAG_IN_MEMORY | FLAG_ON_DISK));
  test.Fold("ColorCount", bitmap->ColorCount);
  test.FoldBytes("DibHeader", &bitmap->DibHeader, sizeof bitmap->DibHeader);
  test.FoldBytes("DibColors", bitmap->DibColors, sizeof bitmap->DibColors);
  FoldPalette(test, "Palette", bitmap->Palette);
  FoldPalette(test, "PaintPalette", bitmap->PaintPalette);
  test.Fold("ViewOrigin", bitmap->ViewOrigin);
  test.Fold("ColorOrder", bitmap->ColorOrder);
  test.Fold("DataSize", bitmap->DataSize);
  test.Fold("DitherMethod", bitmap->DitherMethod);
  test.FoldHandle("Region", bitmap->Region);
  test.Fold("XResolution", bitmap->XResolution);
  test.Fold("YResolution", bitmap->YResolution);
}

void FoldPixels(Case& test, BitmapHandle* bitmap) {
  const auto bits = static_cast<uint32_t>(bitmap->Width * bitmap->BitsPerPixel);
  std::vector<uint8_t> bytes((bits + 7) / 8);
  const int32_t state = Vn_LockBitmap(bitmap);
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    const int32_t count = Vn_GetBitmapRow(bitmap, bytes.data(), row, bytes.size());
    if (count != static_cast<int32_t>(bytes.size())) test.Fold("row", count);
    if (bits % 8) bytes.back() &= static_cast<uint8_t>(0xFF00 >> bits % 8);
    char name[24];
    std::snprintf(name, sizeof name, "row %d", row);
    test.FoldBytes(name, bytes.data(), bytes.size());
  }
  Vn_UnlockBitmap(bitmap, state);
}

void FoldPalette(Case& test, const char* what, HPALETTE palette) {
  RGBQUAD colors[256] = {};
  const uint32_t count = palette ? Vn_GetPaletteEntries(palette, 0, 256, colors) : 0;
  test.Fold(what, palette ? count : -1);
  test.FoldBytes(what, colors, count * sizeof colors[0]);
}

namespace {

// The callback has no argument to find its scope by; cases run on one thread, one scope at a time.
struct {
  Case* test;
  int32_t stopAt, calls;
  VnStatus stopCode;
} hearing;

VnStatus VN_CALL Hear(int32_t percent) {
  hearing.test->Fold("percent", percent);
  return hearing.calls++ == hearing.stopAt ? hearing.stopCode : VnStatus{OK};
}

}  // namespace

ProgressScope::ProgressScope(Case& test, int32_t stopAt, VnStatus stopCode) {
  hearing = {&test, stopAt, 0, stopCode};
  before_ = Vn_SetStatusCallBack(Hear);
}

ProgressScope::~ProgressScope() { Vn_SetStatusCallBack(before_); }

}  // namespace vn::cases
