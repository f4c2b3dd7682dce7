// Painting from a caller's rows: a band of a picture, be the picture stored or not, with what the
// direct path does to the rows, to the lock and to the result.
#include "kernel/guards.h"
#include "tests/cases/canvas.h"

namespace vn::cases {

namespace {

template <Screen Kind>
void Run(Case& test) {
  const Canvas canvas(test, Kind);
  const Shape shape = RandomShape(test, 60, 40);
  Bitmap bitmap(test, shape);
  const DisplayModeScope mode(~0u, RandomDisplayMode(test));
  const RealizedPalette palette = FoldedPaintPalette(test, canvas, bitmap);
  const PaintRects rects(test, *bitmap.get());
  const DWORD operation = RandomOperation(test);
  BitmapHandle record = *bitmap.get();
  if (test.random.Chance(2)) record.Flags &= ~uint32_t{FLAG_ALLOCATED | FLAG_IN_MEMORY};
  // Bands of a loader lie in the picture; others may begin before it and end behind it.
  const int32_t first = test.Pick(test.random.Chance(4) ? -5 : 0, bitmap->Height - 1);
  const int32_t count = test.Pick(0, test.random.Chance(4) ? 40 : bitmap->Height - first);
  test.Note("rows %d to %d", first, first + count);
  std::vector<uint8_t> rows(static_cast<uint32_t>(count + 1) * bitmap->BytesPerLine);
  test.random.Fill(rows.data(), rows.size());
  const std::vector<uint8_t> before = rows;
  test.Fold("Vn_PaintDCBuffer",
            Vn_PaintDCBuffer(canvas, &record, rects.sourceOrNull, rects.sourceClipOrNull,
                             &rects.destination, rects.destinationClipOrNull, operation,
                             rows.data(), first, count));
  test.Fold("rows as before", rows == before);
  // Only memory has a lock, and only on Win32s is a file none.
  if (shape.storage == STORAGE_MEMORY) test.Fold("locked", (record.Flags & FLAG_LOCKED) != 0);
  Vn_ReleaseBitmap(&record);
  FoldArea(test, canvas);
}

const Registration trueColor({"paint-buffer", 1500, 0x80ab335824f566cc, Run<Screen::kTrueColor>,
                              Screen::kTrueColor});
const Registration palette({"paint-buffer-8", 1500, 0xfc9ca28f16f0a6b2, Run<Screen::kPalette>,
                            Screen::kPalette});

}  // namespace

}  // namespace vn::cases
