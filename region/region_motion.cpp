// The motions that keep rectangles rectangles: they work on the list, without the platform.
#include "region/region_motion.h"

#include <cstring>

#include "kernel/platform_objects.h"
#include "region/region_record.h"
#include "region/region_transform.h"

namespace vn {
namespace {

RECT AreaOf(int32_t width, int32_t height) { return {0, 0, width, height}; }

// Changes the region in place. Its rectangles stay inside the bitmap, whose size is then `width` by
// `height`. The memory of those that go is not given back: that could move the block, which two
// records may name.
template <class Map>
VnStatus MoveInPlace(RegionRecord* region, int32_t width, int32_t height, Map map) {
  MapRegionRecord(region, AreaOf(width, height), map);
  DropCachedRegion(region);
  return OK;
}

}  // namespace

VnStatus FlipRegion(BitmapHandle* bitmap) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!bitmap->Region) return OK;
  return MoveInPlace(bitmap->Region, bitmap->Width, bitmap->Height,
                     [=](RECT* rect) { FlipRect(rect, bitmap->Height); });
}

VnStatus ReverseRegion(BitmapHandle* bitmap) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!bitmap->Region) return OK;
  return MoveInPlace(bitmap->Region, bitmap->Width, bitmap->Height,
                     [=](RECT* rect) { ReverseRect(rect, bitmap->Width); });
}

VnStatus ScaleRegion(BitmapHandle* bitmap, int32_t width, int32_t height) {
  if (!bitmap) return ERR_NO_BITMAP;
  const int32_t oldWidth = bitmap->Width, oldHeight = bitmap->Height;
  if (!bitmap->Region || (width == oldWidth && height == oldHeight)) return OK;
  // The products wrap in 32 bits.
  MoveInPlace(bitmap->Region, width, height, [=](RECT* rect) {
    if (width != oldWidth) {
      rect->left = ScaleTruncated(rect->left, width, oldWidth);
      rect->right = ScaleTruncated(rect->right, width, oldWidth);
    }
    if (height != oldHeight) {
      rect->top = ScaleTruncated(rect->top, height, oldHeight);
      rect->bottom = ScaleTruncated(rect->bottom, height, oldHeight);
    }
  });
  ClearEmptyBounds(bitmap->Region);
  return OK;
}

namespace {

void MoveRect(RECT* rect, int32_t dx, int32_t dy) {
  const auto add = [](LONG& value, int32_t distance) {
    value = static_cast<int32_t>(static_cast<uint32_t>(value) + static_cast<uint32_t>(distance));
  };
  add(rect->left, dx);
  add(rect->right, dx);
  add(rect->top, dy);
  add(rect->bottom, dy);
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
  std::memcpy(static_cast<void*>(copy), original, bytes - sizeof(BandNote));
  copy->CachedRegion = nullptr;
  const RECT area = AreaOf(destination->Width, destination->Height);
  const bool same = dx == 0 && dy == 0 && RectIsWithin(original->header.rcBound, area);
  MapRegionRecord(copy, area, [=](RECT* rect) { MoveRect(rect, dx, dy); });
  if (copy->header.nCount != original->header.nCount) copy = ShrinkRegionRecord(copy);
  const HRGN cached = same ? original->CachedRegion : nullptr;
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
