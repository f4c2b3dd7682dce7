// The runs of pixels that a bitmap's region selects in a row, held for a row loop.
#ifndef VNCORE_COMPOSE_ROW_SEGMENTS_H
#define VNCORE_COMPOSE_ROW_SEGMENTS_H

#include <algorithm>

#include "kernel/scratch_buffer.h"
#include "kernel/vncore.h"
#include "region/region_record.h"

namespace vn {

// Test it: it is empty when memory failed. Load fetches a storage row.
class RowSegments {
 public:
  explicit RowSegments(BitmapHandle* bitmap) : bitmap_(bitmap), entries_(Capacity(bitmap)) {}

  explicit operator bool() const { return static_cast<bool>(entries_); }
  void Load(int32_t row) {
    count_ = 0;
    Vn_GetBitmapClipSegments(bitmap_, row, entries_.data(), &count_);
  }
  const int32_t* data() const { return entries_.data(); }
  int32_t count() const { return count_; }

 private:
  // The maximum that is reported does not cover every row: a run takes two entries, and scaling can
  // bring runs to lie side by side. But no row has more runs than the region has rectangles.
  static size_t Capacity(BitmapHandle* bitmap) {
    int32_t reported = 0;
    Vn_GetBitmapClipSegmentsMax(bitmap, &reported);
    const uint32_t rectangles = bitmap->Region ? bitmap->Region->header.nCount : 1;
    return 2 * static_cast<size_t>(std::max<uint32_t>(static_cast<uint32_t>(reported), rectangles));
  }

  BitmapHandle* bitmap_;
  ScratchBuffer<int32_t> entries_;
  int32_t count_ = 0;
};

}  // namespace vn

#endif
