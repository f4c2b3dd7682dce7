// Regions on device contexts: as a clip, and framed.
#include "platform/headless/drawing/outline.h"
#include "platform/headless/regions/regions.h"

namespace headless {
namespace {

Clip ClipOf(const RegionSet& set) {
  return std::make_shared<const ClipRects>(set.rects().begin(), set.rects().end());
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
  return Enter<BOOL>(FALSE, [&]() -> BOOL {
    const auto* found = Find<Context>(context);
    const auto* shape = Find<Region>(region);
    const auto* fill = Find<Brush>(brush);
    if (!found || !found->Target() || !shape || !fill || shape->set.empty()) return FALSE;
    PaintSet(*found, FrameOf(shape->set, width, height), *fill, RasterOp(PATCOPY));
    return TRUE;
  });
}
