#include "compose/combine_area.h"

#include <algorithm>

#include "kernel/rects.h"

namespace vn {
namespace {

// Coordinates are any 32-bit numbers, and wrap.
int32_t Plus(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
int32_t Minus(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// The bounds of the region, within the pixels that the storage has: a record's fields may have
// changed since its region was cut to them.
RECT BoundsOf(BitmapHandle* bitmap) {
  RECT bounds;
  Vn_GetBitmapRgnBounds(bitmap, nullptr, &bounds);
  const uint64_t stride = bitmap->BytesPerLine;
  const auto bits = static_cast<uint64_t>(bitmap->BitsPerPixel);
  const uint64_t columns = stride * 8 / bits;
  const uint64_t rows = stride ? bitmap->DataSize / stride : 0;
  RECT held;
  SetRectValues(&held, 0, 0, static_cast<int32_t>(std::min<uint64_t>(columns, INT32_MAX)),
                static_cast<int32_t>(std::min<uint64_t>(rows, INT32_MAX)));
  held.right = std::min<LONG>(held.right, bitmap->Width);
  held.bottom = std::min<LONG>(held.bottom, bitmap->Height);
  IntersectRects(&bounds, bounds, held);
  return bounds;
}

// One axis: from `at` on `size` pixels, from `sourceAt` on in a source bounded by low and high.
struct Range {
  int32_t begin, end;
};
Range CutToSource(int32_t at, int32_t size, int32_t sourceAt, int32_t low, int32_t high) {
  return {Plus(Minus(std::max(sourceAt, low), sourceAt), at),
          Plus(Minus(std::min(Plus(sourceAt, size), high), sourceAt), at)};
}

bool Within(int32_t first, int32_t count, int32_t low, int32_t high) {
  return first >= low && int64_t{first} + count <= high;
}

}  // namespace

bool CutCombineArea(CombineArea* area, BitmapHandle* destination, int32_t x, int32_t y,
                    int32_t width, int32_t height, BitmapHandle* source, int32_t sourceX,
                    int32_t sourceY) {
  const RECT bounds = BoundsOf(destination);
  RECT sourceBounds{};
  Range columns = {x, Plus(x, width)}, rows = {y, Plus(y, height)};
  if (source) {
    sourceBounds = BoundsOf(source);
    columns = CutToSource(x, width, sourceX, sourceBounds.left, sourceBounds.right);
    rows = CutToSource(y, height, sourceY, sourceBounds.top, sourceBounds.bottom);
  }
  RECT wanted;
  SetRectValues(&wanted, columns.begin, rows.begin, columns.end, rows.end);
  if (!IntersectRects(&area->target, wanted, bounds)) return false;
  if (!source) return true;
  const RECT& target = area->target;
  area->sourceX = Minus(Plus(target.left, sourceX), x);
  area->sourceY = Minus(Plus(target.top, sourceY), y);
  return Within(area->sourceX, target.right - target.left, sourceBounds.left, sourceBounds.right) &&
         Within(area->sourceY, target.bottom - target.top, sourceBounds.top, sourceBounds.bottom);
}

}  // namespace vn
