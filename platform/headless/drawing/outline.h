// What the figures of a context are drawn with: its pen and its brush under its binary operation.
#ifndef VNCORE_PLATFORM_HEADLESS_OUTLINE_H
#define VNCORE_PLATFORM_HEADLESS_OUTLINE_H

#include "platform/headless/devices/context.h"
#include "platform/headless/regions/region_set.h"
#include "platform/headless/surfaces/brush.h"
#include "platform/headless/surfaces/pen.h"
#include "platform/headless/surfaces/raster_op.h"

namespace headless {

// Whether figures can have such points, so that products of coordinates fit 64 bits.
bool WithinReach(const POINT* points, size_t count);

// Paints rectangles one after the other, or what a set covers, within the context's clip, with a
// brush. The context draws on something.
void PaintRects(const Context& context, const RectList& rects, const Brush& brush,
                RasterOp operation);
void PaintSet(const Context& context, const RegionSet& set, const Brush& brush, RasterOp operation);

class Draughtsman {
 public:
  // Null `context`, or one that draws on nothing: nothing is drawn, and false is answered.
  explicit Draughtsman(const Context* context);

  // The brush covers something; otherwise the interior of a figure is not looked at.
  bool fills() const { return brush_ && brush_->kind != Brush::Kind::kNull; }
  // Whether there is something to draw on, and the box is not too far away.
  bool Reaches(const RECT& box) const;
  int32_t penWidth() const { return pen_ ? pen_->width : 0; }
  // What can be seen of the drawing.
  const RECT& bounds() const { return bounds_; }

  // The pen along some points, without the last pixel of the last line.
  bool Line(const POINT* points, size_t count) const;
  // The brush over the interior, and the pen around it. A wide pen paints each of its pixels once,
  // and the brush none of them; a thin one goes over what the brush has painted.
  bool Figure(RegionSet interior, const POINT* outline, size_t count) const;

 private:
  void ThinLine(const POINT* points, size_t count, bool closed) const;

  const Context* context_;
  const Pen* pen_ = nullptr;
  const Brush* brush_ = nullptr;
  RasterOp operation_{0};
  RECT bounds_{0, 0, 0, 0};
};

}  // namespace headless

#endif
