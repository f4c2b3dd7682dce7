#include "region/region_record.h"

#include "kernel/platform_objects.h"

namespace vn {

void DropCachedRegion(RegionRecord* record) {
  if (record->CachedRegion) DeleteObject(record->CachedRegion);
  record->CachedRegion = nullptr;
}

void FreeRegionRecord(RegionRecord* record) {
  if (!record) return;
  DropCachedRegion(record);
  Vn_OsFree(record);
}

BandNote* BandNoteOf(RegionRecord* record) {
  const uint32_t bytes = RegionRecordBytes(record->header.nCount);
  if (bytes == 0 || GlobalSize(GlobalHandle(record)) < bytes) return nullptr;
  return reinterpret_cast<BandNote*>(record->end());
}

void ForgetBandOrder(RegionRecord* record) {
  if (BandNote* note = BandNoteOf(record)) *note = {~0u, 0};
}

void SetRegionCount(RegionRecord* record, uint32_t count) {
  record->header.nCount = count;
  record->header.nRgnSize = static_cast<uint32_t>(count * sizeof(RECT));
}

RegionRecord* ShrinkRegionRecord(RegionRecord* record) {
  void* smaller = Vn_OsReAlloc(record, RegionRecordBytes(record->header.nCount));
  if (smaller) return static_cast<RegionRecord*>(smaller);
  GlobalLock(GlobalHandle(record));  // a failed reallocation leaves the block without its lock
  return record;
}

}  // namespace vn
