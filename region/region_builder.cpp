#include "region/region_builder.h"

#include <algorithm>
#include <cstring>

namespace vn {

RegionBuilder::RegionBuilder()
    : record_(static_cast<RegionRecord*>(Vn_OsAlloc(RegionRecordBytes(kStep)))) {
  if (record_) std::memset(static_cast<void*>(record_), 0, sizeof *record_);
}

bool RegionBuilder::Append(const RECT& rect) {
  if (count_ == capacity_ && !Grow()) return false;
  record_->Rects()[count_++] = rect;
  return true;
}

bool RegionBuilder::Grow() {
  const uint32_t bytes = RegionRecordBytes(capacity_ + kStep);
  void* grown = bytes ? Vn_OsReAlloc(record_, bytes) : nullptr;
  if (!grown) return false;
  record_ = static_cast<RegionRecord*>(grown);
  capacity_ += kStep;
  return true;
}

RegionRecord* RegionBuilder::Finish(const RECT& bounds) {
  record_->header.dwSize = sizeof(RGNDATAHEADER);
  record_->header.iType = RDH_RECTANGLES;
  record_->header.rcBound = bounds;
  SetRegionCount(record_, count_);
  ForgetBandOrder(record_);
  return ShrinkRegionRecord(std::exchange(record_, nullptr));
}

}  // namespace vn
