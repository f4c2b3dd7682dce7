// Regions on device contexts: as a clip, and framed.
#include "platform/headless/devices/context.h"
#include "platform/headless/regions/regions.h"
#include "platform/headless/surfaces/blit.h"

namespace headless {
namespace {

Clip ClipOf(const RegionSet& set) {
  return std::make_shared<const ClipRects>(set.rects().begin(), set.rects().end());
}

// The part of a set that the clip lets through.
RegionSet ThroughClip(const RegionSet& set, const ClipRects& clip) {
  RectList rects;
  rects.Append(clip.data(), clip.size());
  RegionSet through = RegionSet::FromBands(std::move(rects), false);
  CombineSets(through, set, through, RGN_AND);
  return through;
}

bool PaintSet(const Context& context, const RegionSet& set, const Brush& brush) {
  Surface* target = context.Target();
  if (!target) return false;
  RegionSet through;
  through.Assign(set);
  if (context.state.clip) through = ThroughClip(set, *context.state.clip);
  const Clip clip = ClipOf(through);
  Blit({target,
        clip.get(),
        MakeAxis(0, target->width, target->width),
        MakeAxis(0, target->height, target->height),
        nullptr,
        nullptr,
        &brush,
        {RgbOf(context.state.text), RgbOf(context.state.background)},
        RasterOp(PATCOPY)});
  return true;
}

}  // namespace

// The clip is a copy: what becomes of the region later does not change it.
HGDIOBJ Region::SelectInto(Context& context, HGDIOBJ) {
  context.state.clip = ClipOf(set);
  return reinterpret_cast<HGDIOBJ>(static_cast<intptr_t>(set.Kind()));
}

}  // namespace headless

using namespace headless;

int SelectClipRgn(HDC context, HRGN region) {
  return Enter<int>(RGN_ERROR, [&]() -> int {
    auto* found = Find<Context>(context);
    auto* shape = Find<Region>(region);
    if (!found || (region && !shape)) return RGN_ERROR;
    if (shape) {
      found->state.clip = ClipOf(shape->set);
      return shape->set.Kind();
    }
    found->state.clip.reset();
    return SIMPLEREGION;
  });
}

BOOL FrameRgn(HDC context, HRGN region, HBRUSH brush, int width, int height) {
  return Enter<BOOL>(FALSE, [&] {
    const auto* found = Find<Context>(context);
    const auto* shape = Find<Region>(region);
    const auto* fill = Find<Brush>(brush);
    return found && shape && fill && !shape->set.empty() &&
           PaintSet(*found, FrameOf(shape->set, width, height), *fill);
  });
}
