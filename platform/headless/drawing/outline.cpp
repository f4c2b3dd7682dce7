#include "platform/headless/drawing/outline.h"

#include <algorithm>

#include "platform/headless/drawing/thin_line.h"
#include "platform/headless/drawing/wide_line.h"
#include "platform/headless/surfaces/blit.h"

namespace headless {
namespace {

// What can be seen of the context's drawing.
RECT VisibleBounds(const Context& context) {
  const Surface& target = *context.Target();
  const RECT bounds = {0, 0, target.width, target.height};
  const ClipRects* clip = context.state.clip.get();
  if (!clip) return bounds;
  if (clip->empty()) return {0, 0, 0, 0};
  RECT box = clip->front();
  for (const RECT& rect : *clip)
    box = {std::min(box.left, rect.left), box.top, std::max(box.right, rect.right), rect.bottom};
  return Common(bounds, box);
}

}  // namespace

bool WithinReach(const POINT* points, size_t count) {
  return std::all_of(points, points + count, [](const POINT& at) {
    return std::max(at.x, at.y) < kFarthest && std::min(at.x, at.y) > -kFarthest;
  });
}

void PaintRects(const Context& context, const RectList& parts, const Brush& brush,
                RasterOp operation) {
  Surface* const target = context.Target();
  const BlitJob job = {target,
                       context.state.clip.get(),
                       MakeAxis(0, target->width, target->width),
                       MakeAxis(0, target->height, target->height),
                       nullptr,
                       nullptr,
                       &brush,
                       context.Monochrome(),
                       operation};
  BlitParts(job, parts.begin(), parts.size());
}

void PaintSet(const Context& context, const RegionSet& set, const Brush& brush,
              RasterOp operation) {
  PaintRects(context, set.rects(), brush, operation);
}

Draughtsman::Draughtsman(const Context* context)
    : context_(context && context->Target() ? context : nullptr) {
  if (!context_) return;
  pen_ = Find<Pen>(context->state.pen);
  brush_ = Find<Brush>(context->state.brush);
  operation_ = BinaryOp(context->state.operation);
  bounds_ = VisibleBounds(*context);
}

bool Draughtsman::Reaches(const RECT& box) const {
  const POINT corners[] = {{box.left, box.top}, {box.right, box.bottom}};
  return context_ && WithinReach(corners, 2);
}

bool Draughtsman::Line(const POINT* points, size_t count) const {
  if (!context_ || !WithinReach(points, count)) return false;
  if (penWidth() == 1) ThinLine(points, count, false);
  if (penWidth() > 1)
    PaintSet(*context_, WideLine(points, count, false, penWidth(), bounds_), pen_->ink, operation_);
  return true;
}

bool Draughtsman::Figure(RegionSet interior, const POINT* outline, size_t count) const {
  if (!context_ || !WithinReach(outline, count)) return false;
  if (penWidth() <= 1) {
    if (fills()) PaintSet(*context_, interior, *brush_, operation_);
    if (penWidth() == 1) ThinLine(outline, count, true);
    return true;
  }
  const RegionSet covered = WideLine(outline, count, true, penWidth(), bounds_);
  if (fills()) {
    CombineSets(interior, interior, covered, RGN_DIFF);
    PaintSet(*context_, interior, *brush_, operation_);
  }
  PaintSet(*context_, covered, pen_->ink, operation_);
  return true;
}

void Draughtsman::ThinLine(const POINT* points, size_t count, bool closed) const {
  constexpr size_t kMany = 4096;  // runs that are kept before they are painted
  RectList runs;
  const size_t lines = closed ? count : count - 1;
  for (size_t i = 0; i < lines; ++i) {
    AppendThinLine(runs, points[i], points[i + 1 < count ? i + 1 : 0], bounds_);
    if (runs.size() < kMany) continue;
    PaintRects(*context_, runs, pen_->ink, operation_);
    runs.Clear();
  }
  PaintRects(*context_, runs, pen_->ink, operation_);
}

}  // namespace headless
