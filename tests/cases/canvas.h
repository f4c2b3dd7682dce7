// What paints of the library go onto, and the numbers of a paint: shared by the families of painting.
#ifndef VNCORE_TESTS_CASES_CANVAS_H
#define VNCORE_TESTS_CASES_CANVAS_H

#include "device/realized_palette.h"
#include "tests/cases/bitmaps.h"

namespace vn::cases {

// A context to paint on, of either kind that both worlds have, with a ground of the case's own.
//
// On a true-colour screen a bitmap of its depth in a memory context, over random pixels. On a
// palette device the screen itself, black: its hardware palette keeps what earlier cases realised,
// so it is filled with random colours first. Memory contexts are left out there: Wine gives their
// bitmaps a colour table of its own, not the realised palette, so a device-independent look at them
// differs by design.
class Canvas {
 public:
  static constexpr int32_t kWidth = 100, kHeight = 70;

  Canvas(Case& test, Screen screen);
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas();

  operator HDC() const { return context_; }

 private:
  HDC context_;
  HBITMAP surface_ = nullptr;  // null: the context is the screen's
  HGDIOBJ before_ = nullptr;
};

// Folds the colours of the upper left area of a context.
void FoldArea(Case& test, HDC context, int32_t width = Canvas::kWidth,
              int32_t height = Canvas::kHeight);

// The usual display mode, or any.
uint32_t RandomDisplayMode(Case& test);

// Folds how the bitmap would be painted, and realises the palette that the library asks for, which
// it folds as well.
RealizedPalette FoldedPaintPalette(Case& test, HDC context, BitmapHandle* bitmap);

// The rectangles of one paint; a null pointer where the case has none. The destination meets the
// canvas.
struct PaintRects {
  PaintRects(Case& test, const BitmapHandle& bitmap);
  PaintRects(const PaintRects&) = delete;
  PaintRects& operator=(const PaintRects&) = delete;

  RECT source, sourceClip, destination, destinationClip;
  const RECT* sourceOrNull = nullptr;
  const RECT* sourceClipOrNull = nullptr;
  const RECT* destinationClipOrNull = nullptr;
};

// SRCCOPY, and now and then another one.
DWORD RandomOperation(Case& test);

}  // namespace vn::cases

#endif
