// The region of a bitmap: taken from platform regions, kept as a list, given back as one.
#include "region/region_store.h"

#include <cstring>

#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"
#include "region/region_record.h"
#include "region/region_source.h"
#include "region/region_transform.h"
#include "region/region_union.h"

namespace vn {
namespace {

RECT WholeBitmap(const BitmapHandle* bitmap) { return {0, 0, bitmap->Width, bitmap->Height}; }

// Maps the rectangles into the bitmap and cuts them to it. The record's address after that.
RegionRecord* MapRecordIn(RegionRecord* record, const BitmapHandle* bitmap,
                          const RegionMapping& mapping) {
  const uint32_t before = record->header.nCount;
  MapRegionRecord(record, WholeBitmap(bitmap), [&](RECT* rect) { mapping.MapIn(rect); });
  ClearEmptyBounds(record);
  return record->header.nCount == before ? record : ShrinkRegionRecord(record);
}

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

VnStatus InstallRegion(BitmapHandle* bitmap, const RegionTransform* transform, HRGN region) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!region) {
    AttachRegion(bitmap, nullptr);
    return OK;
  }
  if (!RegionMapping::IsValid(transform)) return ERR_INVALID_PARAMETER;
  RegionRecord* record = nullptr;
  const RegionMapping mapping(bitmap, transform);
  const VnStatus status = OnWin32s() ? ScanRegion(region, bitmap->Height, mapping, &record)
                                     : ReadRegion(region, &record);
  if (status != OK) return status;
  AttachRegion(bitmap, MapRecordIn(record, bitmap, mapping));
  return OK;
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

// Old and new combined, into new.
int CombineOldAndNew(HRGN oldRegion, HRGN newRegion, uint32_t mode) {
  switch (mode) {
    case REGION_COMBINE_AND:
      return CombineRgn(newRegion, oldRegion, newRegion, RGN_AND);
    case REGION_COMBINE_NEW_MINUS_OLD:
      return CombineRgn(newRegion, newRegion, oldRegion, RGN_DIFF);
    case REGION_COMBINE_OLD_MINUS_NEW:
      return CombineRgn(newRegion, oldRegion, newRegion, RGN_DIFF);
    case REGION_COMBINE_OR:
      return CombineRgn(newRegion, oldRegion, newRegion, RGN_OR);
    default:
      return CombineRgn(newRegion, oldRegion, newRegion, RGN_XOR);
  }
}

VnStatus InstallInverted(BitmapHandle* bitmap, const RegionTransform* transform, HRGN region) {
  const OwnedObject<HRGN> whole(CreateRectRgn(0, 0, bitmap->Width, bitmap->Height));
  if (!whole || CombineRgn(whole.get(), whole.get(), region, RGN_XOR) == RGN_ERROR) {
    return ERR_NO_MEMORY;
  }
  return InstallRegion(bitmap, transform, whole.get());
}

// `install` gives the bitmap the new shape, transformed and cut: it is combined as it then stands
// in the record.
template <class Install>
VnStatus InstallCombined(BitmapHandle* bitmap, uint32_t mode, Install install) {
  HRGN handle = nullptr;
  VnStatus status = Vn_GetBitmapRgnHandle(bitmap, nullptr, &handle);
  if (status != OK) return status;
  const OwnedObject<HRGN> oldRegion(handle);
  status = install();
  if (status != OK) return status;
  status = Vn_GetBitmapRgnHandle(bitmap, nullptr, &handle);
  if (status != OK) return status;
  const OwnedObject<HRGN> newRegion(handle);
  if (CombineOldAndNew(oldRegion.get(), newRegion.get(), mode) == RGN_ERROR) {
    return ERR_NO_MEMORY;
  }
  return InstallRegion(bitmap, nullptr, newRegion.get());
}

}  // namespace

VnStatus InstallRecord(BitmapHandle* bitmap, RegionRecord* record, uint32_t combine) {
  bool taken = false;
  const auto attach = [&]() -> VnStatus {
    AttachRegion(bitmap, record);
    taken = true;
    return OK;
  };
  const VnStatus status =
      combine == REGION_COMBINE_REPLACE ? attach() : InstallCombined(bitmap, combine, attach);
  if (!taken) FreeRegionRecord(record);
  return status;
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
  return vn::InstallCombined(bitmap, combine,
                             [&] { return vn::InstallRegion(bitmap, transform, region); });
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
  const vn::OwnedObject<HRGN> region(handle);
  if (OffsetRgn(handle, columns, rows) == RGN_ERROR) return ERR_NO_MEMORY;
  return Vn_SetBitmapRgnHandle(bitmap, nullptr, handle, REGION_COMBINE_REPLACE);
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
  for (const RECT& rect : *bitmap->Region) {
    if (holds(rect)) return 1;
  }
  return 0;
}
