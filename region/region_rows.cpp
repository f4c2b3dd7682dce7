#include "region/region_rows.h"

#include <algorithm>

namespace vn {

RegionRows::RegionRows(const RegionRecord* record)
    : record_(record), look_(LookAtBands(*record)), band_{record->begin(), record->begin()} {}

void RegionRows::GoTo(int32_t row) {
  const auto holds = [&](const RECT* rect) {
    return rect != record_->end() && rect->top <= row && row < rect->bottom;
  };
  if (band_.begin != band_.end && holds(band_.begin)) return;
  // A walk down the rows comes to the next band of a list that runs down.
  if (look_.order == BandOrder::kDown && holds(band_.end)) {
    band_.begin = band_.end;
    while (holds(band_.end))
      ++band_.end;
    return;
  }
  band_ = BandAt(*record_, look_.order, row);
}

int32_t RegionRows::Segments(int32_t row, int32_t* segments) {
  const RECT& bounds = record_->header.rcBound;
  if (row < bounds.top || row >= bounds.bottom) return 0;
  GoTo(row);
  return WriteRuns(look_.order, band_, row, segments);
}

bool RegionRows::Contains(int32_t row, int32_t column) {
  const RECT& bounds = record_->header.rcBound;
  if (row < bounds.top || row >= bounds.bottom || column < bounds.left || column >= bounds.right) {
    return false;
  }
  GoTo(row);
  return std::any_of(band_.begin, band_.end, [&](const RECT& rect) {
    return rect.left <= column && column < rect.right && rect.top <= row && row < rect.bottom;
  });
}

uint32_t ClipSegmentsCapacity(const BitmapHandle* bitmap) {
  int32_t reported = 0;
  Vn_GetBitmapClipSegmentsMax(bitmap, &reported);
  const uint32_t most = bitmap->Region ? RegionRows(bitmap->Region).MostSegments() : 2;
  return std::max(2 * static_cast<uint32_t>(std::max(reported, 0)), most);
}

}  // namespace vn
