// The runs of pixels that a bitmap's region selects in a row, held for a row loop.
#ifndef VNCORE_COMPOSE_ROW_SEGMENTS_H
#define VNCORE_COMPOSE_ROW_SEGMENTS_H

#include <algorithm>
#include <optional>

#include <vncore/vncore.h>
#include "kernel/row_position.h"
#include "kernel/scratch_buffer.h"
#include "region/region_rows.h"

namespace vn {

// What Vn_GetBitmapClipSegments tells of each row, found without a walk through the whole region,
// in an array that no row overruns, and cut to the rows and columns that the record has: a region
// stays as it is when its bitmap loses rows. Every writer through a region takes its runs from here,
// and so stays inside the pixels whatever bounds it walks. Test it: it is empty when memory failed.
// The bitmap must not change while this lives.
class RowSegments {
 public:
  explicit RowSegments(const BitmapHandle* bitmap)
      : height_(bitmap->Height),
        columns_(std::min(bitmap->Width, ColumnsInRow(*bitmap))),
        entries_(ClipSegmentsCapacity(bitmap)) {
    if (entries_ && bitmap->Region) rows_.emplace(bitmap->Region);
  }

  explicit operator bool() const { return static_cast<bool>(entries_); }

  // Fetches the runs of a storage row.
  void Load(int32_t row) {
    count_ = 0;
    if (row < 0 || row >= height_) return;
    if (!rows_) return Keep(0, columns_);
    const int32_t found = rows_->Segments(row, entries_.data());
    for (int32_t i = 0; i < found; i += 2)
      Keep(std::max(entries_[i], 0), std::min(entries_[i + 1], columns_));
  }
  const int32_t* data() const { return entries_.data(); }
  // Entries, two a run.
  int32_t count() const { return count_; }

 private:
  // Runs move towards the front only.
  void Keep(int32_t left, int32_t right) {
    if (left >= right) return;
    entries_[count_++] = left;
    entries_[count_++] = right;
  }

  int32_t height_, columns_;
  std::optional<RegionRows> rows_;
  ScratchBuffer<int32_t> entries_;
  int32_t count_ = 0;
};

}  // namespace vn

#endif
