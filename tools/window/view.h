// How the picture lies in the window: zoom and pan. Numbers alone; nothing here paints.
#ifndef VNCORE_TOOLS_VIEW_H
#define VNCORE_TOOLS_VIEW_H

#include <vncore/vncore.h>
#include "tools/operations/value_parsers.h"

namespace vn::tool {

// Window pixels for each picture pixel, as a quotient.
struct Zoom {
  int32_t numerator = 1, denominator = 1;

  double Factor() const { return double{1} * numerator / denominator; }
};

class View {
 public:
  // Sizes in pixels, at least 1 by 1. A view that was fitted stays so.
  void SetPicture(Size picture);
  void SetWindow(Size window);

  // All of the picture; smaller pictures are enlarged only if `enlarge` says so.
  void Fit(bool enlarge);
  // To the next smaller (-1) or larger (1) of the usual zooms, or to one pixel for each. The spot
  // under `anchor`, a window position, stays where it is as far as the picture's edges allow.
  void StepZoom(int32_t direction, POINT anchor);
  void ShowPixels(POINT anchor);
  // Moves the picture, as far as its edges allow.
  void Pan(int32_t dx, int32_t dy);

  const Zoom& zoom() const { return zoom_; }
  POINT Centre() const { return {window_.width / 2, window_.height / 2}; }
  // Where all of the picture comes, in the window and beyond it.
  RECT Destination() const;
  // The pixel at a window position, the nearest one outside the picture.
  POINT PixelAt(POINT position) const;
  // From the picture as seen to the window, for functions that take a region.
  RegionTransform Transform() const;

  // Whether a paint of the whole picture onto Destination() stays within the kernel's words, which
  // hold products of both sizes.
  bool PaintsWhole() const;
  // What is to be painted: the whole picture, or what the window shows of it where that would not
  // do. `part` is in the picture as seen; its edges lie on edges of window pixels.
  struct Placement {
    Area part;
    RECT destination;
  };
  Placement Place() const;

 private:
  enum class Fitting { kNo, kShrink, kAlways };
  int32_t Extent(int32_t side) const;
  void Settle();
  void ZoomTo(Zoom zoom, POINT anchor);

  Size picture_{1, 1}, window_{1, 1};
  Fitting fitting_ = Fitting::kShrink;
  Zoom zoom_;
  int32_t left_ = 0, top_ = 0;
};

}  // namespace vn::tool

#endif
