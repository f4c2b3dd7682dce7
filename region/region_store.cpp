// The region of a bitmap: taken from platform regions, kept as a list, given back as one.
#include "region/region_store.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"
#include "region/band_order.h"
#include "region/region_record.h"
#include "region/region_source.h"
#include "region/region_transform.h"
#include "region/region_union.h"

namespace vn {
namespace {

RECT WholeBitmap(const BitmapHandle* bitmap) { return {0, 0, bitmap->Width, bitmap->Height}; }

// A new platform region with the pixels of another one, or null.
HRGN CopyOf(HRGN region) {
  OwnedObject<HRGN> copy(CreateRectRgn(0, 0, 0, 0));
  if (!copy || CombineRgn(copy.get(), region, nullptr, RGN_COPY) == RGN_ERROR) return nullptr;
  return copy.Release();
}

}  // namespace

void AttachRegion(BitmapHandle* bitmap, RegionRecord* record) {
  FreeRegionRecord(bitmap->Region);
  bitmap->Region = record;
}

namespace {

// A record that no bitmap has yet.
struct NewRecord {
  RegionRecord* record;
  bool same;  // it holds all the pixels of the region that it was read from, and no others
};

// Reads a platform region, maps it into the bitmap and cuts it to it.
VnStatus ReadInto(const BitmapHandle* bitmap, const RegionTransform* transform, HRGN region,
                  NewRecord* made) {
  if (!RegionMapping::IsValid(transform)) return ERR_INVALID_PARAMETER;
  RegionRecord* record = nullptr;
  const RegionMapping mapping(bitmap, transform);
  const VnStatus status = OnWin32s() ? ScanRegion(region, bitmap->Height, mapping, &record)
                                     : ReadRegion(region, &record);
  if (status != OK) return status;
  const RECT whole = WholeBitmap(bitmap);
  const bool same = !mapping.Changes() && RectIsWithin(record->header.rcBound, whole);
  if (!same) {
    const uint32_t before = record->header.nCount;
    MapRegionRecord(record, whole, [&](RECT* rect) { mapping.MapIn(rect); });
    if (record->header.nCount != before) record = ShrinkRegionRecord(record);
  }
  ClearEmptyBounds(record);
  *made = {record, same};
  return OK;
}

// Installs a region that is not needed any more: the record keeps it as the object built from its
// list where that is what it is.
VnStatus InstallOwned(BitmapHandle* bitmap, const RegionTransform* transform,
                      OwnedObject<HRGN> region) {
  NewRecord made{};
  const VnStatus status = ReadInto(bitmap, transform, region.get(), &made);
  if (status != OK) return status;
  if (made.same) made.record->CachedRegion = region.Release();
  AttachRegion(bitmap, made.record);
  return OK;
}

}  // namespace

VnStatus InstallRegion(BitmapHandle* bitmap, const RegionTransform* transform, HRGN region) {
  if (!bitmap) return ERR_NO_BITMAP;
  NewRecord made{};
  const VnStatus status = region ? ReadInto(bitmap, transform, region, &made) : OK;
  if (status == OK) AttachRegion(bitmap, made.record);
  return status;
}

namespace {

// The object that serves the record's next request with the same transform.
class RegionCache {
 public:
  RegionCache(RegionRecord* record, const RegionTransform* transform)
      : record_(record), transform_(transform) {}

  bool Serves() const {
    if (!record_->CachedRegion || (record_->CacheHasTransform != 0) != (transform_ != nullptr)) {
      return false;
    }
    return !transform_ ||
           std::memcmp(transform_, &record_->CachedTransform, sizeof *transform_) == 0;
  }

  // The object, which is the caller's from now on.
  HRGN Take() { return std::exchange(record_->CachedRegion, nullptr); }

  // Keeps a copy of `region`. A store without a transform leaves the mark of an earlier one, so
  // that the record misses at every later call without one, and serves what it stored to a call
  // with that earlier transform: a peculiarity that stays.
  bool Store(HRGN region) {
    DropCachedRegion(record_);
    record_->CachedRegion = CopyOf(region);
    if (transform_) {
      record_->CachedTransform = *transform_;
      record_->CacheHasTransform = 1;
    }
    return record_->CachedRegion != nullptr;
  }

 private:
  RegionRecord* record_;
  const RegionTransform* transform_;
};

HRGN BuildRegion(const RegionRecord& record, const RegionMapping& mapping) {
  RegionUnion built;
  for (RECT rect : record) {
    mapping.MapOut(&rect);
    if (!built.Add(rect)) return nullptr;
  }
  return built.Finish();
}

// Old and new combined, into old.
int CombineOldAndNew(HRGN oldRegion, HRGN newRegion, uint32_t mode) {
  switch (mode) {
    case REGION_COMBINE_AND:
      return CombineRgn(oldRegion, oldRegion, newRegion, RGN_AND);
    case REGION_COMBINE_NEW_MINUS_OLD:
      return CombineRgn(oldRegion, newRegion, oldRegion, RGN_DIFF);
    case REGION_COMBINE_OLD_MINUS_NEW:
      return CombineRgn(oldRegion, oldRegion, newRegion, RGN_DIFF);
    case REGION_COMBINE_OR:
      return CombineRgn(oldRegion, oldRegion, newRegion, RGN_OR);
    default:
      return CombineRgn(oldRegion, oldRegion, newRegion, RGN_XOR);
  }
}

VnStatus InstallInverted(BitmapHandle* bitmap, const RegionTransform* transform, HRGN region) {
  OwnedObject<HRGN> whole(CreateRectRgn(0, 0, bitmap->Width, bitmap->Height));
  if (!whole || CombineRgn(whole.get(), whole.get(), region, RGN_XOR) == RGN_ERROR) {
    return ERR_NO_MEMORY;
  }
  return InstallOwned(bitmap, transform, std::move(whole));
}

// The present region as an object of the caller's own. A record that is about to go gives the one
// that it keeps.
OwnedObject<HRGN> TakePresent(BitmapHandle* bitmap) {
  if (bitmap->Region) {
    RegionCache cache(bitmap->Region, nullptr);
    if (cache.Serves()) return OwnedObject<HRGN>(cache.Take());
    return OwnedObject<HRGN>(BuildRegion(*bitmap->Region, RegionMapping(bitmap, nullptr)));
  }
  return OwnedObject<HRGN>(CreateRectRgn(0, 0, bitmap->Width, bitmap->Height));
}

// Takes `record` over, the new shape as it lies in the bitmap, and combines it with the present
// region. `shape` is a platform region of the same pixels, or null where there is none. A failure
// after the first step leaves the new shape alone.
VnStatus InstallCombined(BitmapHandle* bitmap, RegionRecord* record, HRGN shape, uint32_t mode) {
  OwnedObject<HRGN> all = TakePresent(bitmap);
  if (!all) {
    FreeRegionRecord(record);
    return ERR_NO_MEMORY;
  }
  AttachRegion(bitmap, record);
  OwnedObject<HRGN> built;
  if (!shape) {
    built = OwnedObject<HRGN>(BuildRegion(*record, RegionMapping(bitmap, nullptr)));
    shape = built.get();
  }
  if (!shape || CombineOldAndNew(all.get(), shape, mode) == RGN_ERROR) return ERR_NO_MEMORY;
  return InstallOwned(bitmap, nullptr, std::move(all));
}

}  // namespace

VnStatus InstallRecord(BitmapHandle* bitmap, RegionRecord* record, uint32_t combine) {
  if (combine != REGION_COMBINE_REPLACE) return InstallCombined(bitmap, record, nullptr, combine);
  AttachRegion(bitmap, record);
  return OK;
}

}  // namespace vn

VnStatus VN_CALL Vn_SetBitmapRgnHandle(BitmapHandle* bitmap, const RegionTransform* transform,
                                       HRGN region, uint32_t combine) {
  if (!region) combine = REGION_COMBINE_REPLACE;
  if (!bitmap || combine > REGION_COMBINE_REPLACE_INVERTED) return ERR_INVALID_PARAMETER;
  if (combine == REGION_COMBINE_REPLACE) return vn::InstallRegion(bitmap, transform, region);
  if (combine == REGION_COMBINE_REPLACE_INVERTED) {
    return vn::InstallInverted(bitmap, transform, region);
  }
  vn::NewRecord made{};
  const VnStatus status = vn::ReadInto(bitmap, transform, region, &made);
  if (status != OK) return status;
  return vn::InstallCombined(bitmap, made.record, made.same ? region : nullptr, combine);
}

VnStatus VN_CALL Vn_GetBitmapRgnHandle(BitmapHandle* bitmap, const RegionTransform* transform,
                                       HRGN* region) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!region || !vn::RegionMapping::IsValid(transform)) return ERR_INVALID_PARAMETER;
  const vn::RegionMapping mapping(bitmap, transform);
  if (!bitmap->Region) {
    RECT whole = vn::WholeBitmap(bitmap);
    mapping.MapOut(&whole);
    *region = CreateRectRgnIndirect(&whole);
    return *region ? OK : ERR_NO_MEMORY;
  }
  vn::RegionCache cache(bitmap->Region, transform);
  if (cache.Serves()) {
    *region = vn::CopyOf(bitmap->Region->CachedRegion);
    return *region ? OK : ERR_NO_MEMORY;
  }
  vn::OwnedObject<HRGN> built(vn::BuildRegion(*bitmap->Region, mapping));
  if (!built || !cache.Store(built.get())) return ERR_NO_MEMORY;
  *region = built.Release();
  return OK;
}

VnStatus VN_CALL Vn_GetBitmapRgnBounds(BitmapHandle* bitmap, const RegionTransform* transform,
                                       RECT* bounds) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!bounds || !vn::RegionMapping::IsValid(transform)) return ERR_INVALID_PARAMETER;
  *bounds = bitmap->Region ? bitmap->Region->header.rcBound : vn::WholeBitmap(bitmap);
  vn::RegionMapping(bitmap, transform).MapOut(bounds);
  return OK;
}

VnStatus VN_CALL Vn_OffsetBitmapRgn(BitmapHandle* bitmap, int32_t rows, int32_t columns) {
  HRGN handle = nullptr;
  const VnStatus status = Vn_GetBitmapRgnHandle(bitmap, nullptr, &handle);
  if (status != OK) return status;
  vn::OwnedObject<HRGN> region(handle);
  if (OffsetRgn(handle, columns, rows) == RGN_ERROR) return ERR_NO_MEMORY;
  return vn::InstallOwned(bitmap, nullptr, std::move(region));
}

VnStatus VN_CALL Vn_FreeBitmapRgn(BitmapHandle* bitmap) {
  return Vn_SetBitmapRgnHandle(bitmap, nullptr, nullptr, REGION_COMBINE_REPLACE);
}

int32_t VN_CALL Vn_BitmapHasRgn(const BitmapHandle* bitmap) {
  return bitmap && bitmap->Region ? 1 : 0;
}

int32_t VN_CALL Vn_IsPtInBitmapRgn(const BitmapHandle* bitmap, int32_t row, int32_t column) {
  if (!bitmap) return 0;
  const auto holds = [=](const RECT& rect) {
    return rect.left <= column && column < rect.right && rect.top <= row && row < rect.bottom;
  };
  if (!bitmap->Region) return holds(vn::WholeBitmap(bitmap));
  if (!holds(bitmap->Region->header.rcBound)) return 0;
  const vn::RectBand among = vn::BandAt(*bitmap->Region, vn::BandOrderOf(bitmap->Region), row);
  return std::any_of(among.begin, among.end, holds);
}
