#include "tests/cases/canvas.h"

#include <algorithm>
#include <cstdio>

#include "tests/cases/surfaces.h"

namespace vn::cases {

Canvas::Canvas(Case& test, Screen screen) : context_(GetDC(nullptr)) {
  if (screen == Screen::kPalette) {
    const RandomPaletteScope ground(test, context_, 256);
    RealizePalette(context_);
    PatBlt(context_, 0, 0, 320, 240, BLACKNESS);
    return;
  }
  HDC display = context_;
  context_ = CreateCompatibleDC(display);
  surface_ = CreateCompatibleBitmap(display, kWidth, kHeight);
  ReleaseDC(nullptr, display);
  before_ = SelectObject(context_, surface_);
  Dib ground(test, kWidth, kHeight, 24, false, false);
  StretchDIBits(context_, 0, 0, kWidth, kHeight, 0, 0, kWidth, kHeight, ground.bits(),
                ground.info(), DIB_RGB_COLORS, SRCCOPY);
}

Canvas::~Canvas() {
  if (!surface_) {
    ReleaseDC(nullptr, context_);
    return;
  }
  SelectObject(context_, before_);
  DeleteObject(surface_);
  DeleteDC(context_);
}

void FoldArea(Case& test, HDC context, int32_t width, int32_t height) {
  DibInfo info = DibOf(width, -height, 24);
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

uint32_t RandomDisplayMode(Case& test) {
  const auto mode = test.random.Chance(3) ? 12u : static_cast<uint32_t>(test.Pick(0, 255));
  test.Note("mode %02x", mode);
  return mode;
}

RealizedPalette FoldedPaintPalette(Case& test, HDC context, BitmapHandle* bitmap) {
  int32_t deviceBits = 0, kind = 0;
  Vn_GetDitherFlags(context, bitmap, &deviceBits, &kind);
  test.Fold("deviceBits", deviceBits);
  test.Fold("paintKind", kind);
  HPALETTE palette = Vn_CreatePaintPalette(context, bitmap);
  FoldPalette(test, "paint palette", palette);
  return RealizedPalette(context, palette);
}

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

}  // namespace

PaintRects::PaintRects(Case& test, const BitmapHandle& bitmap) {
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

DWORD RandomOperation(Case& test) {
  const DWORD operation =
      test.random.Chance(6) ? test.OneOf({SRCAND, SRCPAINT, SRCINVERT, NOTSRCCOPY}) : SRCCOPY;
  test.Note("operation %08x", static_cast<unsigned>(operation));
  return operation;
}

}  // namespace vn::cases
