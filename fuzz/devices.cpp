// Painting and devices: bitmaps onto screens and surfaces of every depth, and the platform's own
// drawing beneath.
#include <algorithm>
#include <cstring>

#include <vncore/platform/headless/headless.h>
#include "fuzz/calls.h"

namespace vn::fuzz {

namespace {

void PaintRealised(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const HDC context = world.Device(input);
  const HPALETTE palette = Vn_CreatePaintPalette(context, bitmap);
  world.Keep(palette);
  const HPALETTE before = palette ? SelectPalette(context, palette, FALSE) : nullptr;
  if (palette) RealizePalette(context);
  Argument<const RECT*> source(world, input), sourceClip(world, input);
  Argument<const RECT*> target(world, input), targetClip(world, input);
  const auto rasterOp = static_cast<uint32_t>(input.Number());
  Vn_PaintDC(context, bitmap, source.get(), sourceClip.get(), target.get(), targetClip.get(),
             input.Flag() ? SRCCOPY : rasterOp);
  if (palette) SelectPalette(context, before, FALSE);
}

// A block that says of itself what it likes.
void FromDib(World& world, Input& input) {
  const size_t bytes = input.Byte() * size_t{16};
  const HGLOBAL dib = GlobalAlloc(GMEM_MOVEABLE, bytes);
  if (!dib) return;
  if (auto* const block = static_cast<uint8_t*>(GlobalLock(dib))) {
    input.Fill(block, bytes);
    BITMAPINFOHEADER header = {};
    header.biSize = static_cast<DWORD>(input.OneOf({40, 12, 44, 124, 3, -1}));
    header.biWidth = input.Number();
    header.biHeight = input.Number();
    header.biPlanes = static_cast<WORD>(input.OneOf({1, 0, 3}));
    header.biBitCount = static_cast<WORD>(input.Number());
    header.biCompression = input.Below(4);
    header.biClrUsed = static_cast<DWORD>(input.Number());
    std::memcpy(block, &header, std::min(bytes, sizeof header));
    GlobalUnlock(dib);
  }
  if (Vn_ChangeFromDIB(world.Fresh(), dib) != OK) GlobalFree(dib);
}

void ToDib(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const HGLOBAL dib = input.Flag() ? Vn_ConvertToDIB(bitmap) : Vn_ChangeToDIB(bitmap);
  if (!dib) return;
  if (input.Flag() && Vn_ChangeFromDIB(world.Fresh(), dib) == OK) return;
  GlobalFree(dib);
}

void ToDeviceBitmap(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const HDC context = world.Device(input);
  world.Keep(input.Flag() ? Vn_ConvertToDDB(context, bitmap) : Vn_ChangeToDDB(context, bitmap));
}

void FromDeviceBitmap(World& world, Input& input) {
  const int32_t bits = input.OneOf({1, 4, 8, 16, 24, 32});
  const int32_t width = input.Between(1, 99), height = input.Between(1, 70);
  const HBITMAP object = CreateBitmap(width, height, 1, static_cast<UINT>(bits), nullptr);
  world.Keep(object);
  const HDC context = world.Device(input);
  const HPALETTE palette = world.Palette(input);
  const auto convert = input.Flag() ? &Vn_ConvertFromDDB : &Vn_ChangeFromDDB;
  convert(context, world.Fresh(), object, palette);
}

// A job on a small printer, of one or two calls of either way of printing.
void Print(World& world, Input& input) {
  const Headless_Display page = {100, 80, input.OneOf({1, 4, 8, 24}), 0, 0, DT_RASPRINTER, 300};
  const Headless_Printer printer = {"Printer,DRIVER,PORT:", page, page.bitsPerPixel == 1 ? 2 : 0};
  Headless_SetPrinter(&printer);
  HDC job = nullptr;
  for (int32_t last = input.Flag();; last = 1) {
    BitmapHandle* const bitmap = world.Bitmap(input);
    const int32_t x = input.Number(), y = input.Number();
    const int32_t width = input.Number(), height = input.Number();
    const auto print = input.Flag() ? &Vn_PrintBitmapFast : &Vn_PrintBitmapExt;
    const HDC printed = print(job, bitmap, x, y, width, height, last);
    if (last) break;
    if (!printed && job) DeleteDC(job);
    job = printed;
  }
  Headless_SetPrinter(nullptr);
}

const Call kCalls[] = {
    VN_FUZZ_COMMON_CALLS,
    &PaintRealised,
    &Decoded<&Vn_PaintDC>,
    &Decoded<&Vn_GetDitherFlags>,
    &Decoded<&Vn_CreatePaintPalette>,
    &Decoded<&Vn_SetDisplayMode>,
    &Decoded<&Vn_GetPixelColor>,
    &Decoded<&Vn_HalfToneBitmap>,
    // The platform itself.
    [](World& world, Input& input) {
      const HDC context = world.Device(input);
      const int32_t x = input.Number();
      GetPixel(context, x, input.Number());
    },
    [](World& world, Input& input) {
      const HDC context = world.Device(input);
      const int32_t x = input.Number(), y = input.Number();
      const int32_t width = input.Number(), height = input.Number();
      PatBlt(context, x, y, width, height, static_cast<DWORD>(input.Number()));
    },
    &Decoded<&Vn_SetBitmapRgnColor>,
    &Decoded<&Vn_PaintRgnDC>,
    &Decoded<&Vn_FrameBitmapRgn>,
    &FromDib,
    &ToDib,
    &ToDeviceBitmap,
    &FromDeviceBitmap,
    [](World& world, Input& input) {
      Vn_CopyToClipboardExt(nullptr, world.Bitmap(input), input.Below(16));
    },
    [](World& world, Input&) { Vn_CopyFromClipboard(nullptr, world.Fresh()); },
    [](World& world, Input& input) {
      const HDC context = world.Device(input);
      Argument<const RECT*> rect(world, input);
      if (rect.get()) Vn_ScreenCaptureBitmap(context, world.Fresh(), rect.get());
    },
    &Print,
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
