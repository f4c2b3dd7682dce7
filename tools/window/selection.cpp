#include "tools/window/selection.h"

#include <algorithm>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

void Require(VnStatus status) {
  if (status != OK) throw Failure(StatusText(status));
}

}  // namespace

void Selection::SwitchShape() {
  using Shape = RegionValue::Shape;
  shape_ = shape_ == Shape::kRect ? Shape::kEllipse : Shape::kRect;
}

void Selection::Begin(BitmapHandle* bitmap, POINT pixel, uint32_t combine) {
  HRGN before = nullptr;
  if (Vn_BitmapHasRgn(bitmap)) {
    Require(Vn_GetBitmapRgnHandle(bitmap, nullptr, &before));
  } else if (combine == REGION_COMBINE_OR) {
    combine = REGION_COMBINE_REPLACE;  // all is selected where there is no region
  }
  drag_.emplace(Drag{bitmap, pixel, combine, OwnedObject<HRGN>(before)});
}

void Selection::MoveTo(POINT pixel) {
  const Drag& drag = *drag_;
  const auto [left, right] = std::minmax(drag.from.x, pixel.x);
  const auto [top, bottom] = std::minmax(drag.from.y, pixel.y);
  Require(Vn_SetBitmapRgnHandle(drag.bitmap, nullptr, drag.before.get(), REGION_COMBINE_REPLACE));
  const RegionValue region{
      shape_,
      {static_cast<int32_t>(left), static_cast<int32_t>(top),
       static_cast<int32_t>(right - left) + 1, static_cast<int32_t>(bottom - top) + 1},
      drag.combine};
  Require(region.Set(drag.bitmap));
}

}  // namespace vn::tool
