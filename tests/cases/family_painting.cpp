// Painting: every depth, order and storage through all renderers and display modes, with clips and
// scales, onto the two kinds of surface that both worlds have: a bitmap of a true-colour screen,
// and the screen of a palette device.
//
// Memory contexts are left out on the palette device: Wine gives their bitmaps a colour table of
// its own, not the realised palette, so a device-independent look at them differs by design.
#include <algorithm>
#include <cstdio>

#include "tests/cases/bitmaps.h"
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

RECT RandomRect(Case& test, int32_t width, int32_t height) {
  RECT rect;
  rect.left = test.Pick(-4, width - 1);
  rect.top = test.Pick(-4, height - 1);
  rect.right = rect.left + test.Pick(0, width + 4);
  rect.bottom = rect.top + test.Pick(0, height + 4);
  return rect;
}

void NoteRect(Case& test, const char* what, const RECT* rect) {
  if (!rect) return test.Note("%s: none", what);
  test.Note("%s: %d,%d to %d,%d", what, static_cast<int>(rect->left), static_cast<int>(rect->top),
            static_cast<int>(rect->right), static_cast<int>(rect->bottom));
}

// The rectangles of one paint; a null pointer where the case has none.
struct Rects {
  RECT source, sourceClip, destination, destinationClip;
  const RECT* sourceOrNull = nullptr;
  const RECT* sourceClipOrNull = nullptr;
  const RECT* destinationClipOrNull = nullptr;

  Rects(Case& test, const BitmapHandle& bitmap) {
    if (test.random.Chance(2)) {
      source = RandomRect(test, bitmap.Width, bitmap.Height);
      // An empty source has no scale.
      source.right = std::max(source.right, source.left + 1);
      source.bottom = std::max(source.bottom, source.top + 1);
      sourceOrNull = &source;
    }
    if (test.random.Chance(3)) {
      sourceClip = RandomRect(test, bitmap.Width, bitmap.Height);
      sourceClipOrNull = &sourceClip;
    }
    const RECT whole = {0, 0, bitmap.Width, bitmap.Height};
    const RECT& from = sourceOrNull ? source : whole;
    int32_t width = static_cast<int32_t>(from.right - from.left);
    int32_t height = static_cast<int32_t>(from.bottom - from.top);
    if (!test.random.Chance(3)) {
      if (!test.random.Chance(4)) width = test.Pick(1, 90);
      if (!test.random.Chance(4)) height = test.Pick(1, 60);
    }
    const int32_t x = test.Pick(-3, 20), y = test.Pick(-3, 15);
    destination = {x, y, x + width, y + height};
    if (test.random.Chance(3)) {
      destinationClip = RandomRect(test, width, height);
      destinationClip.left += x, destinationClip.right += x;
      destinationClip.top += y, destinationClip.bottom += y;
      destinationClipOrNull = &destinationClip;
    }
    NoteRect(test, "source", sourceOrNull);
    NoteRect(test, "source clip", sourceClipOrNull);
    NoteRect(test, "destination", &destination);
    NoteRect(test, "destination clip", destinationClipOrNull);
  }
};

// Colours of the upper left area of a context, as 24-bit pixels.
void FoldArea(Case& test, HDC context, int32_t width, int32_t height) {
  DibInfo info = {};
  info.header = {sizeof info.header, width, -height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  HDC memory = CreateCompatibleDC(nullptr);
  void* pixels = nullptr;
  HBITMAP section = CreateDIBSection(memory, info.get(), DIB_RGB_COLORS, &pixels, nullptr, 0);
  HGDIOBJ before = SelectObject(memory, section);
  test.Fold("BitBlt", BitBlt(memory, 0, 0, width, height, context, 0, 0, SRCCOPY) != 0);
  for (int32_t row = 0; row < height; ++row) {
    char name[24];
    std::snprintf(name, sizeof name, "row %d", row);
    test.FoldBytes(
        name, static_cast<uint8_t*>(pixels) + DibStride(width, 24) * static_cast<uint32_t>(row),
        static_cast<size_t>(width) * 3);
  }
  SelectObject(memory, before);
  DeleteObject(section);
  DeleteDC(memory);
}

constexpr int32_t kWidth = 100, kHeight = 70;

// One paint onto `context`, with the palette that the library asks for realised.
void Paint(Case& test, HDC context) {
  Bitmap bitmap(test, RandomShape(test, 60, 40));
  const auto mode = test.random.Chance(3) ? 12u : static_cast<uint32_t>(test.Pick(0, 255));
  const uint32_t modeBefore = Vn_SetDisplayMode(static_cast<uint32_t>(-1), mode);
  int32_t deviceBits = 0, kind = 0;
  Vn_GetDitherFlags(context, bitmap, &deviceBits, &kind);
  test.Note("mode %02x", mode);
  test.Fold("deviceBits", deviceBits);
  test.Fold("paintKind", kind);

  HPALETTE palette = Vn_CreatePaintPalette(context, bitmap);
  FoldPalette(test, "paint palette", palette);
  HPALETTE paletteBefore = palette ? SelectPalette(context, palette, FALSE) : nullptr;
  if (palette) RealizePalette(context);

  const Rects rects(test, *bitmap.get());
  const DWORD operation =
      test.random.Chance(6) ? test.OneOf({SRCAND, SRCPAINT, SRCINVERT, NOTSRCCOPY}) : SRCCOPY;
  test.Note("operation %08x", static_cast<unsigned>(operation));
  test.Fold("Vn_PaintDC", Vn_PaintDC(context, bitmap, rects.sourceOrNull, rects.sourceClipOrNull,
                                     &rects.destination, rects.destinationClipOrNull, operation));
  FoldArea(test, context, kWidth, kHeight);

  Vn_SetDisplayMode(static_cast<uint32_t>(-1), modeBefore);
  if (paletteBefore) SelectPalette(context, paletteBefore, FALSE);
  if (palette) DeleteObject(palette);
}

// A bitmap of the screen's own depth in a memory context, over a ground of random pixels.
void RunTrueColor(Case& test) {
  HDC screen = GetDC(nullptr);
  HDC context = CreateCompatibleDC(screen);
  HBITMAP surface = CreateCompatibleBitmap(screen, kWidth, kHeight);
  ReleaseDC(nullptr, screen);
  HGDIOBJ before = SelectObject(context, surface);
  Dib ground(test, kWidth, kHeight, 24, false, false);
  StretchDIBits(context, 0, 0, kWidth, kHeight, 0, 0, kWidth, kHeight, ground.bits(), ground.info(),
                DIB_RGB_COLORS, SRCCOPY);
  Paint(test, context);
  SelectObject(context, before);
  DeleteObject(surface);
  DeleteDC(context);
}

// The screen itself, black. Its hardware palette keeps what earlier cases realised, so each case
// begins with a ground of its own.
HDC ScreenWithGround(Case& test) {
  HDC screen = GetDC(nullptr);
  const RandomPaletteScope ground(test, screen, 256);
  RealizePalette(screen);
  PatBlt(screen, 0, 0, 320, 240, BLACKNESS);
  return screen;
}

void RunPalette(Case& test) {
  HDC screen = ScreenWithGround(test);
  Paint(test, screen);
  ReleaseDC(nullptr, screen);
}

// The road that most pictures take to such a screen: 24 bits, scaled, dithered to the fixed palette
// that the library asks for, which is realised. Gradients under some noise, so that errors show.
void RunRoad(Case& test) {
  HDC screen = ScreenWithGround(test);
  Shape shape = RandomShape(test, 200, 150);
  shape.bits = 24;
  Bitmap bitmap(test, shape);
  std::vector<uint8_t> row(bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  for (uint32_t y = 0; y < shape.height; ++y) {
    for (uint32_t x = 0; x < shape.width; ++x) {
      row[3 * x] = static_cast<uint8_t>(test.Pick(96, 128));
      row[3 * x + 1] = static_cast<uint8_t>(y * 255 / shape.height);
      row[3 * x + 2] = static_cast<uint8_t>(x * 255 / shape.width);
    }
    Vn_PutBitmapRow(bitmap, row.data(), y, bitmap->BytesPerLine);
  }
  Vn_UnlockBitmap(bitmap, state);

  const uint32_t modeBefore =
      Vn_SetDisplayMode(MODE_ORDERED_DITHER, static_cast<uint32_t>(test.Pick(0, 1)));
  HPALETTE palette = Vn_CreatePaintPalette(screen, bitmap);
  HPALETTE paletteBefore = SelectPalette(screen, palette, FALSE);
  RealizePalette(screen);
  const int32_t width = test.Pick(1, 320), height = test.Pick(1, 240);
  const RECT destination = {0, 0, width, height};
  test.Note("onto %dx%d", width, height);
  test.Fold("Vn_PaintDC",
            Vn_PaintDC(screen, bitmap, nullptr, nullptr, &destination, nullptr, SRCCOPY));
  FoldArea(test, screen, 320, 240);
  SelectPalette(screen, paletteBefore, FALSE);
  DeleteObject(palette);
  Vn_SetDisplayMode(static_cast<uint32_t>(-1), modeBefore);
  ReleaseDC(nullptr, screen);
}

const Registration trueColor({"painting", 2000, 0x4A4CD74A4EAD9072u, RunTrueColor,
                              Screen::kTrueColor});
const Registration palette({"painting-8", 2000, 0x740987B9719685E2u, RunPalette, Screen::kPalette});
const Registration road({"palette-road", 200, 0x001236B0F1490B43u, RunRoad, Screen::kPalette});

}  // namespace

}  // namespace vn::cases
