// The runs of pixels that a bitmap's region selects in a row, held for a row loop.
#ifndef VNCORE_COMPOSE_ROW_SEGMENTS_H
#define VNCORE_COMPOSE_ROW_SEGMENTS_H

#include <optional>

#include "kernel/scratch_buffer.h"
#include "kernel/vncore.h"
#include "region/region_rows.h"

namespace vn {

// What Vn_GetBitmapClipSegments tells of each row, found without a walk through the whole region,
// in an array that no row overruns. Test it: it is empty when memory failed. The region must not
// change while this lives.
class RowSegments {
 public:
  explicit RowSegments(const BitmapHandle* bitmap) : entries_(ClipSegmentsCapacity(bitmap)) {
    if (!entries_) return;
    if (bitmap->Region) {
      rows_.emplace(bitmap->Region);
    } else {
      entries_[0] = 0;
      entries_[1] = bitmap->Width;
      count_ = 2;
    }
  }

  explicit operator bool() const { return static_cast<bool>(entries_); }

  // Fetches the runs of a storage row.
  void Load(int32_t row) {
    if (rows_) count_ = rows_->Segments(row, entries_.data());
  }
  const int32_t* data() const { return entries_.data(); }
  // Entries, two a run.
  int32_t count() const { return count_; }

 private:
  std::optional<RegionRows> rows_;
  ScratchBuffer<int32_t> entries_;
  int32_t count_ = 0;
};

}  // namespace vn

#endif
