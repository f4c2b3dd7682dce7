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

RegionRecord* ShrinkRegionRecord(RegionRecord* record, uint32_t count) {
  record->header.nCount = count;
  record->header.nRgnSize = static_cast<uint32_t>(count * sizeof(RECT));
  void* smaller = Vn_OsReAlloc(record, RegionRecordBytes(count));
  return smaller ? static_cast<RegionRecord*>(smaller) : record;
}

}  // namespace vn
