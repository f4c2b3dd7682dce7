// Painting and devices: bitmaps onto screens and surfaces of every depth, and the platform's own
// drawing beneath.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <vncore/platform/headless/headless.h>
#include "fuzz/calls.h"

namespace vn::fuzz {

namespace {

// Rows and columns that no device shows are painted all the same, and so are an effect's pieces of
// four pixels.
bool TakesLong(const RECT* target, const RECT* clip, bool effect) {
  if (!target) return false;
  int64_t rows = std::abs(int64_t{target->bottom} - target->top);
  int64_t columns = std::abs(int64_t{target->right} - target->left);
  if (clip) {
    rows = std::min(rows, std::abs(int64_t{clip->bottom} - clip->top));
    columns = std::min(columns, std::abs(int64_t{clip->right} - clip->left));
  }
  if (rows > 1 << 14) return true;
  if (effect) return rows * columns > 1 << 18;
  // Widths that no 32-bit number holds are the library's to judge.
  return columns <= INT32_MAX && rows * columns > 1 << 22;
}

// The arguments that all paints share; the palette of the paint is realised as long as they live.
struct Paint {
  Paint(World& world, Input& input)
      : bitmap(world.Bitmap(input)),
        context(world.Device(input)),
        palette(Vn_CreatePaintPalette(context, bitmap)),
        before(palette ? SelectPalette(context, palette, FALSE) : nullptr),
        source(world, input),
        sourceClip(world, input),
        target(world, input),
        targetClip(world, input),
        rasterOp(static_cast<uint32_t>(input.Number())) {
    world.Keep(palette);
    if (palette) RealizePalette(context);
    if (input.Flag()) rasterOp = SRCCOPY;
  }
  Paint(const Paint&) = delete;
  Paint& operator=(const Paint&) = delete;
  ~Paint() {
    if (palette) SelectPalette(context, before, FALSE);
  }

  // Calls one of the paints; `more` are the arguments that it has beyond the others.
  template <class Function, class... More>
  void Run(Function function, More... more) {
    if (TakesLong(target.get(), targetClip.get(), sizeof...(more) > 0)) return;
    function(context, bitmap, source.get(), sourceClip.get(), target.get(), targetClip.get(),
             rasterOp, more...);
  }

  BitmapHandle* bitmap;
  HDC context;
  HPALETTE palette, before;
  Argument<const RECT*> source, sourceClip, target, targetClip;
  uint32_t rasterOp;
};

// The paints with whatever comes.
template <auto paint>
void DecodedPaint(World& world, Input& input) {
  Argument<HDC> context(world, input);
  Argument<BitmapHandle*> bitmap(world, input);
  Argument<const RECT*> source(world, input), sourceClip(world, input);
  Argument<const RECT*> target(world, input), targetClip(world, input);
  const auto rasterOp = static_cast<uint32_t>(input.Number());
  if (TakesLong(target.get(), targetClip.get(), false)) return;
  paint(context.get(), bitmap.get(), source.get(), sourceClip.get(), target.get(), targetClip.get(),
        rasterOp);
}

void PaintRealised(World& world, Input& input) { Paint(world, input).Run(&Vn_PaintDC); }

void PaintEffect(World& world, Input& input) {
  Paint paint(world, input);
  const uint32_t effect = input.Below(EFFECT_COUNT + 1);
  paint.Run(input.Flag() ? &Vn_PaintRgnDCEffect : &Vn_PaintDCEffect, effect);
}

// The caller answers for the rows. Where the clip lets nothing through the bitmap stays locked.
void PaintRows(World& world, Input& input) {
  Paint paint(world, input);
  if (paint.bitmap->BytesPerLine > 1 << 14) return;
  const auto count = static_cast<int32_t>(input.Below(20));
  const int32_t first = input.Number();
  const auto rows = Buffer(input, paint.bitmap->BytesPerLine * static_cast<size_t>(count));
  const int32_t state = Vn_LockBitmap(paint.bitmap);
  paint.Run(input.Flag() ? &Vn_PaintRgnDCBuffer : &Vn_PaintDCBuffer, rows.get(), first, count);
  Vn_UnlockBitmap(paint.bitmap, state);
}

// Lines, figures and letters, under any pen and operation.
void DrawFigures(HDC context, Input& input) {
  HPEN pen = CreatePen(input.OneOf({PS_SOLID, PS_NULL}), input.Number(), 0x8040FF);
  SelectObject(context, pen);
  SetROP2(context, static_cast<int>(input.Below(18)));
  POINT points[6];
  const auto count = static_cast<int>(input.Below(7));
  for (POINT& point : points) {
    point.x = input.Number();
    point.y = input.Number();
  }
  const RECT box = {points[0].x, points[0].y, points[1].x, points[1].y};
  Polyline(context, points, count);
  Polygon(context, points, count);
  Rectangle(context, box.left, box.top, box.right, box.bottom);
  Ellipse(context, box.left, box.top, box.right, box.bottom);
  SetPixel(context, points[2].x, points[2].y, 0x204060);
  FillRect(context, &box, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  char text[8];
  input.Fill(text, sizeof text);
  TextOutA(context, points[3].x, points[3].y, text, sizeof text);
  SelectObject(context, GetStockObject(BLACK_PEN));
  DeleteObject(pen);
}

// Draws on a bitmap's own pixels, and paints another one there.
void DrawOnPixels(World& world, Input& input) {
  BitmapHandle* const bitmap = world.Bitmap(input);
  const HDC context = Vn_CreateVornDC(bitmap);
  if (!context) return;
  BitmapHandle* const other = world.Bitmap(input);
  Argument<const RECT*> target(world, input);
  if (other != bitmap && !TakesLong(target.get(), nullptr, false)) {
    Vn_PaintDC(context, other, nullptr, nullptr, target.get(), nullptr, SRCCOPY);
  }
  const int32_t x = input.Number(), y = input.Number();
  const int32_t width = input.Number(), height = input.Number();
  PatBlt(context, x, y, width, height, static_cast<DWORD>(input.Number()));
  if (input.Flag()) DrawFigures(context, input);
  if (!Vn_DeleteVornDC(context)) std::abort();
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

// A header whose colours and rows the caller answers for.
void FromRows(World& world, Input& input) {
  struct {
    BITMAPINFOHEADER header = {};
    RGBQUAD colors[256];
  } info;
  input.Fill(info.colors, sizeof info.colors);
  const int32_t bits = input.OneOf({1, 4, 8, 16, 24, 32, 2});
  const Size size = world.TakeSize(input, bits);
  info.header.biSize = sizeof info.header;
  info.header.biWidth = static_cast<LONG>(size.width);
  info.header.biHeight = static_cast<LONG>(size.height);
  info.header.biBitCount = static_cast<WORD>(bits);
  const uint64_t stride = (uint64_t{size.width} * static_cast<uint32_t>(bits) + 31) / 32 * 4;
  const uint64_t bytes = stride * size.height;
  const auto rows = Buffer(input, bytes <= 1 << 20 ? static_cast<size_t>(bytes) : 0);
  Vn_ConvertFromDIB(world.Fresh(), reinterpret_cast<const BITMAPINFO*>(&info), rows.get());
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

// For its length there is a small printer.
class Printer {
 public:
  explicit Printer(Input& input) {
    const Headless_Display page = {100, 80, input.OneOf({1, 4, 8, 24}), 0, 0, DT_RASPRINTER, 300};
    const Headless_Printer printer = {"Printer,DRIVER,PORT:", page, page.bitsPerPixel == 1 ? 2 : 0};
    Headless_SetPrinter(&printer);
  }
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;
  ~Printer() { Headless_SetPrinter(nullptr); }
};

// A job of one or two calls of either way of printing.
void Print(World& world, Input& input) {
  const Printer printer(input);
  HDC job = nullptr;
  for (int32_t last = input.Flag();; last = 1) {
    BitmapHandle* const bitmap = world.Bitmap(input);
    const int32_t x = input.Number(), y = input.Number();
    const int32_t width = input.Number(), height = input.Number();
    const auto print = input.Flag() ? &Vn_PrintBitmapFast : &Vn_PrintBitmapExt;
    job = print(job, bitmap, x, y, width, height, last);
    if (last) break;
  }
}

// The job that the thread keeps, and forgets when a later call of it is stopped.
void PrintInThread(World& world, Input& input) {
  const Printer printer(input);
  HDC job = nullptr;
  for (uint32_t left = input.Below(3); left > 0; --left) {
    BitmapHandle* const bitmap = world.Bitmap(input);
    const int32_t x = input.Number(), y = input.Number();
    const int32_t width = input.Number(), height = input.Number();
    const bool last = input.Flag();
    const HDC printed = Vn_PrintBitmap(bitmap, x, y, width, height, last);
    if (!printed && !last && job) DeleteDC(job);
    job = last ? nullptr : printed;
  }
  Vn_PrintBitmap(nullptr, 0, 0, 0, 0, 1);
}

// Sizes that are possible on some device are small ones, upside down too.
void Capture(World& world, Input& input) {
  const HDC context = world.Device(input);
  Argument<const RECT*> argument(world, input);
  const RECT* const rect = argument.get();
  if (!rect) return;
  const int64_t width = int64_t{rect->right} - rect->left;
  const int64_t height = std::abs(int64_t{rect->bottom} - rect->top);
  constexpr int64_t kMostPixels = int64_t{8} * UINT32_MAX;  // of 1 bit
  if (width > 0 && height > 0 && width <= kMostPixels / height && width * height > 1 << 18) return;
  Vn_ScreenCaptureBitmap(context, world.Fresh(), rect);
}

// One region object stays behind each frame.
void Frame(World& world, Input& input) {
  const HDC context = world.Device(input);
  BitmapHandle* const bitmap = world.Bitmap(input);
  Argument<const RegionTransform*> transform(world, input);
  if (Vn_FrameBitmapRgn(context, bitmap, transform.get(), input.Below(9)) == OK) World::Lose();
}

const Call kCalls[] = {
    &PaintRealised,
    &DecodedPaint<&Vn_PaintDC>,
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
    &DecodedPaint<&Vn_PaintRgnDC>,
    &Frame,
    &FromDib,
    &ToDib,
    &ToDeviceBitmap,
    &FromDeviceBitmap,
    [](World& world, Input& input) {
      Vn_CopyToClipboardExt(nullptr, world.Bitmap(input), input.Below(16));
    },
    [](World& world, Input&) { Vn_CopyFromClipboard(nullptr, world.Fresh()); },
    &Capture,
    &Print,
    &PaintEffect,
    &PaintRows,
    &DrawOnPixels,
    &FromRows,
    &PrintInThread,
    [](World& world, Input& input) { Vn_CopyToClipboard(nullptr, world.Bitmap(input)); },
    &Decoded<&Vn_ClipboardReady>,
};

}  // namespace

}  // namespace vn::fuzz

VN_FUZZ_TARGET(vn::fuzz::kCalls)
