#include "region/region_rows.h"

#include <algorithm>

namespace vn {

RegionRows::RegionRows(const RegionRecord* record) : record_(record) {
  Inspect();
  band_ = record->begin();
  bandEnd_ = order_ == Order::kNone ? record->end() : band_;
}

// A banded list, downwards or upwards: rectangles with the same top have the same bottom and stand
// together, and bands do not overlap.
void RegionRows::Inspect() {
  bool down = true, up = true;
  uint32_t runs = 0;
  const RECT* before = nullptr;
  for (const RECT& rect : *record_) {
    if (before && rect.top == before->top && rect.bottom == before->bottom) {
      ++runs;
    } else {
      if (before) {
        down = down && rect.top >= before->bottom;
        up = up && rect.bottom <= before->top;
      }
      if (rect.bottom <= rect.top) down = up = false;
      mostRuns_ = std::max(mostRuns_, runs);
      runs = 1;
    }
    before = &rect;
  }
  mostRuns_ = std::max(mostRuns_, runs);
  if (down) return;
  order_ = up ? Order::kUp : Order::kNone;
  if (order_ == Order::kNone) mostRuns_ = record_->header.nCount;
}

void RegionRows::GoTo(int32_t row) {
  if (order_ == Order::kNone) return;
  if (band_ != bandEnd_ && band_->top <= row && row < band_->bottom) return;
  // A walk down the rows comes to the next band of a list that runs down.
  if (order_ == Order::kDown && bandEnd_ != record_->end() && bandEnd_->top <= row &&
      row < bandEnd_->bottom) {
    band_ = bandEnd_;
    while (bandEnd_ != record_->end() && bandEnd_->top == band_->top)
      ++bandEnd_;
    return;
  }
  const auto before = [&](const RECT& rect) {
    return order_ == Order::kDown ? rect.bottom <= row : rect.top > row;
  };
  const auto notBehind = [&](const RECT& rect) {
    return order_ == Order::kDown ? rect.top <= row : rect.bottom > row;
  };
  band_ = std::partition_point(record_->begin(), record_->end(), before);
  bandEnd_ = std::partition_point(band_, record_->end(), notBehind);
}

int32_t RegionRows::Segments(int32_t row, int32_t* segments) {
  GoTo(row);
  int32_t* out = segments;
  const RECT& bounds = record_->header.rcBound;
  if (row < bounds.top || row >= bounds.bottom) return 0;
  for (const RECT* rect = band_; rect != bandEnd_; ++rect) {
    if (row < rect->top || row >= rect->bottom) continue;
    *out++ = rect->left;
    *out++ = rect->right;
  }
  return static_cast<int32_t>(out - segments);
}

bool RegionRows::Contains(int32_t row, int32_t column) {
  const RECT& bounds = record_->header.rcBound;
  if (row < bounds.top || row >= bounds.bottom || column < bounds.left || column >= bounds.right) {
    return false;
  }
  GoTo(row);
  return std::any_of(band_, bandEnd_, [&](const RECT& rect) {
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
