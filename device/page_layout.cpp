#include "device/page_layout.h"

#include <cstdlib>

#include "kernel/rects.h"

namespace vn {
namespace {

struct Extent {
  int32_t width, height;
};

// The largest extent of the picture's aspect within `room`; the height is tried first.
Extent FitInto(const Extent& room, int32_t pictureWidth, int32_t pictureHeight) {
  Extent fitted{0, std::abs(room.height)};
  fitted.width = MulDiv(fitted.height, pictureWidth, pictureHeight);
  if (fitted.width > room.width) {
    fitted.width = room.width;
    fitted.height = MulDiv(fitted.width, pictureHeight, pictureWidth);
  }
  return fitted;
}

Extent WantedExtent(const Extent& room, int32_t pictureWidth, int32_t pictureHeight,
                    const Placement& wanted) {
  if (!wanted.width && !wanted.height) return FitInto(room, pictureWidth, pictureHeight);
  if (!wanted.width) {
    return {MulDiv(pictureWidth, wanted.height, pictureHeight), wanted.height};
  }
  if (!wanted.height) {
    return {wanted.width, MulDiv(pictureHeight, wanted.width, pictureWidth)};
  }
  return {wanted.width, wanted.height};
}

int32_t Centred(int32_t start, int64_t room, int64_t extent) {
  return static_cast<int32_t>(start + (room - extent) / 2);
}

// Words wrap, as the platform's OffsetRect has it; what wraps is empty afterwards.
int32_t Shifted(int32_t value, int32_t by) {
  return static_cast<int32_t>(static_cast<uint32_t>(value) + static_cast<uint32_t>(by));
}

}  // namespace

RECT PlaceOnPage(const RECT& page, int32_t pictureWidth, int32_t pictureHeight,
                 const Placement& wanted) {
  const Extent room{page.right - page.left, page.bottom - page.top};
  const Extent extent = WantedExtent(room, pictureWidth, pictureHeight, wanted);
  const int32_t x = wanted.x ? wanted.x : Centred(page.left, room.width, extent.width);
  const int32_t y = wanted.y ? wanted.y
                             : Centred(page.top, std::abs(int64_t{room.height}),
                                       std::abs(int64_t{extent.height}));
  RECT placed;
  SetRectValues(&placed, x, y, Shifted(x, extent.width), Shifted(y, extent.height));
  if (!IntersectRects(&placed, placed, page)) placed = {};
  return placed;
}

}  // namespace vn
