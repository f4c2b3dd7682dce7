// The region calls of GDI32.
#include "platform/headless/regions/regions.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/headless/base/faults.h"

namespace headless {
namespace {

// Win32s has no GetRegionData.
bool ListsRegions() {
  const DWORD version = GetVersion();
  return !(version & 0x80000000u) || (version & 0xFF) >= 4;
}

HRGN AddRegion(RegionSet set) { return AddNew<HRGN>(std::make_unique<Region>(std::move(set))); }

}  // namespace
}  // namespace headless

using namespace headless;

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
  return Enter<HRGN>(nullptr,
                     [&] { return AddRegion(RegionSet::FromRect(left, top, right, bottom)); });
}

HRGN CreateRectRgnIndirect(const RECT* rect) {
  return CreateRectRgn(rect->left, rect->top, rect->right, rect->bottom);
}

HRGN CreateEllipticRgnIndirect(const RECT* box) {
  // Corners larger than the box are cut down to it.
  return CreateRoundRectRgn(box->left, box->top, box->right, box->bottom, INT32_MAX, INT32_MAX);
}

HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int cornerWidth,
                        int cornerHeight) {
  return Enter<HRGN>(nullptr, [&] {
    return AddRegion(RoundRectSet(left, top, right, bottom, cornerWidth, cornerHeight));
  });
}

HRGN CreatePolygonRgn(const POINT* points, int count, int fillRule) {
  if (!points || count < 0) return nullptr;
  return Enter<HRGN>(
      nullptr, [&] { return AddRegion(PolygonSet(points, static_cast<size_t>(count), fillRule)); });
}

int CombineRgn(HRGN result, HRGN first, HRGN second, int mode) {
  return Enter<int>(RGN_ERROR, [&]() -> int {
    auto* to = Find<Region>(result);
    const auto* a = Find<Region>(first);
    const auto* b = mode == RGN_COPY ? a : Find<Region>(second);
    if (!to || !a || !b || mode < RGN_AND || mode > RGN_COPY) return RGN_ERROR;
    if (FailsNow(HEADLESS_OBJECT)) return RGN_ERROR;
    if (mode == RGN_COPY) {
      to->set.Assign(a->set);
    } else {
      CombineSets(to->set, a->set, b->set, mode);
    }
    return to->set.Kind();
  });
}

BOOL SetRectRgn(HRGN region, int left, int top, int right, int bottom) {
  return Enter<BOOL>(FALSE, [&] {
    auto* found = Find<Region>(region);
    if (found) found->set = RegionSet::FromRect(left, top, right, bottom);
    return found != nullptr;
  });
}

int OffsetRgn(HRGN region, int x, int y) {
  return Enter<int>(RGN_ERROR, [&]() -> int {
    auto* found = Find<Region>(region);
    if (!found) return RGN_ERROR;
    found->set.Offset(x, y);
    return found->set.Kind();
  });
}

int GetRgnBox(HRGN region, LPRECT box) {
  return Enter<int>(RGN_ERROR, [&]() -> int {
    const auto* found = Find<Region>(region);
    if (!found || !box) return RGN_ERROR;
    *box = found->set.bounds();
    return found->set.Kind();
  });
}

DWORD GetRegionData(HRGN region, DWORD bytes, LPRGNDATA data) {
  return Enter<DWORD>(0, [&]() -> DWORD {
    const auto* found = Find<Region>(region);
    if (!found || !ListsRegions()) return 0;
    const RectList& rects = found->set.rects();
    const auto size = static_cast<DWORD>(rects.size() * sizeof(RECT));
    const auto needed = static_cast<DWORD>(sizeof(RGNDATAHEADER) + size);
    if (!data) return needed;
    if (bytes < needed) return 0;
    data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rects.size()), size,
                 found->set.bounds()};
    if (size) std::memcpy(data->Buffer, rects.begin(), size);
    return needed;
  });
}

BOOL PtInRegion(HRGN region, int x, int y) {
  return Enter<BOOL>(FALSE, [&] {
    const auto* found = Find<Region>(region);
    return found && found->set.Contains(x, y);
  });
}

BOOL RectInRegion(HRGN region, const RECT* rect) {
  return Enter<BOOL>(FALSE, [&] {
    const auto* found = Find<Region>(region);
    const RECT ordered = {std::min(rect->left, rect->right), std::min(rect->top, rect->bottom),
                          std::max(rect->left, rect->right), std::max(rect->top, rect->bottom)};
    return found && found->set.Meets(ordered);
  });
}
