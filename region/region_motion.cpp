// The motions that keep rectangles rectangles: they work on the list, without the platform.
#include "region/region_motion.h"

#include <cstring>

#include "kernel/platform_objects.h"
#include "kernel/rects.h"
#include "region/region_record.h"
#include "region/region_transform.h"

namespace vn {

VnStatus FlipRegion(BitmapHandle* bitmap) {
  if (!bitmap) return ERR_NO_BITMAP;
  RegionRecord* region = bitmap->Region;
  if (!region) return OK;
  for (RECT& rect : *region)
    FlipRect(&rect, bitmap->Height);
  FlipRect(&region->header.rcBound, bitmap->Height);
  DropCachedRegion(region);
  return OK;
}

VnStatus ReverseRegion(BitmapHandle* bitmap) {
  if (!bitmap) return ERR_NO_BITMAP;
  RegionRecord* region = bitmap->Region;
  if (!region) return OK;
  for (RECT& rect : *region)
    ReverseRect(&rect, bitmap->Width);
  ReverseRect(&region->header.rcBound, bitmap->Width);
  DropCachedRegion(region);
  return OK;
}

VnStatus ScaleRegion(BitmapHandle* bitmap, int32_t width, int32_t height) {
  if (!bitmap) return ERR_NO_BITMAP;
  RegionRecord* region = bitmap->Region;
  const int32_t oldWidth = bitmap->Width, oldHeight = bitmap->Height;
  if (!region || (width == oldWidth && height == oldHeight)) return OK;
  const auto scale = [=](RECT rect) {
    if (width != oldWidth) {
      rect.left = ScaleTruncated(rect.left, width, oldWidth);
      rect.right = ScaleTruncated(rect.right, width, oldWidth);
    }
    if (height != oldHeight) {
      rect.top = ScaleTruncated(rect.top, height, oldHeight);
      rect.bottom = ScaleTruncated(rect.bottom, height, oldHeight);
    }
    return rect;
  };
  RECT* kept = region->begin();
  for (const RECT& rect : *region) {
    const RECT scaled = scale(rect);
    if (!RectIsEmpty(scaled)) *kept++ = scaled;
  }
  RECT& bounds = region->header.rcBound;
  bounds = scale(bounds);
  if (RectIsEmpty(bounds)) bounds = {0, 0, 0, 0};
  DropCachedRegion(region);
  // Only the count shrinks. Giving the memory back could move the block, which two records name.
  SetRegionCount(region, static_cast<uint32_t>(kept - region->begin()));
  return OK;
}

namespace {

void MoveRegion(RegionRecord* region, int32_t dx, int32_t dy) {
  const auto add = [](LONG& value, int32_t distance) {
    value = static_cast<int32_t>(static_cast<uint32_t>(value) + static_cast<uint32_t>(distance));
  };
  const auto move = [&](RECT& rect) {
    add(rect.left, dx);
    add(rect.right, dx);
    add(rect.top, dy);
    add(rect.bottom, dy);
  };
  for (RECT& rect : *region)
    move(rect);
  move(region->header.rcBound);
}

// The record's address when it is cut to `area`.
RegionRecord* CutRegion(RegionRecord* region, const RECT& area) {
  RECT* kept = region->begin();
  for (const RECT rect : *region) {
    if (IntersectRects(kept, rect, area)) ++kept;
  }
  RECT& bounds = region->header.rcBound;
  if (!IntersectRects(&bounds, bounds, area)) bounds = {0, 0, 0, 0};
  return ShrinkRegionRecord(region, static_cast<uint32_t>(kept - region->begin()));
}

bool Within(const RECT& rect, const RECT& area) {
  return rect.left >= area.left && rect.right <= area.right && rect.top >= area.top &&
         rect.bottom <= area.bottom;
}

}  // namespace

VnStatus CopyRegion(BitmapHandle* destination, const BitmapHandle* source, int32_t dx, int32_t dy) {
  if (!destination || !source) return ERR_INVALID_PARAMETER;
  const RegionRecord* original = source->Region;
  if (!original) {
    destination->Region = nullptr;
    return OK;
  }
  const uint32_t bytes = RegionRecordBytes(original->header.nCount);
  auto* copy = static_cast<RegionRecord*>(bytes ? Vn_OsAlloc(bytes) : nullptr);
  if (!copy) return ERR_NO_MEMORY;
  std::memcpy(static_cast<void*>(copy), original, bytes);
  copy->CachedRegion = nullptr;
  HRGN cached = original->CachedRegion;
  if (dx != 0 || dy != 0) {
    MoveRegion(copy, dx, dy);
    cached = nullptr;
  }
  const RECT area = {0, 0, destination->Width, destination->Height};
  if (!Within(copy->header.rcBound, area)) {
    copy = CutRegion(copy, area);
    cached = nullptr;
  }
  if (cached) {
    // The copy can do without: it is built anew when it is asked for.
    OwnedObject<HRGN> object(CreateRectRgn(0, 0, 0, 0));
    if (object && CombineRgn(object.get(), cached, nullptr, RGN_COPY) != RGN_ERROR) {
      copy->CachedRegion = object.Release();
    }
  }
  destination->Region = copy;
  return OK;
}

}  // namespace vn
