// Regions that the mouse drags.
#ifndef VNCORE_TOOLS_SELECTION_H
#define VNCORE_TOOLS_SELECTION_H

#include <optional>

#include "kernel/platform_objects.h"
#include "tools/operations/region_value.h"

namespace vn::tool {

class Selection {
 public:
  // Rectangles at first, or ellipses.
  void SwitchShape();

  // A drag begins at a pixel of the picture as seen. `combine` is the REGION_COMBINE_ value that
  // joins the new shape to the region that is there. Throws Failure, as MoveTo does.
  void Begin(BitmapHandle* bitmap, POINT pixel, uint32_t combine);
  // Sets the bitmap's region: the shape from the first pixel to this one, both included.
  void MoveTo(POINT pixel);
  void End() { drag_.reset(); }
  bool dragging() const { return drag_.has_value(); }

 private:
  struct Drag {
    BitmapHandle* bitmap;
    POINT from;
    uint32_t combine;
    OwnedObject<HRGN> before;  // null: there was no region
  };
  std::optional<Drag> drag_;
  RegionValue::Shape shape_ = RegionValue::Shape::kRect;
};

}  // namespace vn::tool

#endif
