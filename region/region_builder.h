// A region record in the making.
#ifndef VNCORE_REGION_REGION_BUILDER_H
#define VNCORE_REGION_REGION_BUILDER_H

#include <utility>

#include "region/region_record.h"

namespace vn {

// Test it: it is empty when memory failed.
class RegionBuilder {
 public:
  RegionBuilder();
  RegionBuilder(const RegionBuilder&) = delete;
  RegionBuilder& operator=(const RegionBuilder&) = delete;
  ~RegionBuilder() {
    if (record_) Vn_OsFree(record_);
  }

  explicit operator bool() const { return record_ != nullptr; }
  uint32_t count() const { return count_; }
  RECT& operator[](uint32_t i) { return record_->Rects()[i]; }
  // False when memory failed; what is there stays.
  bool Append(const RECT& rect);
  // Takes back all from the rectangle `count` on.
  void CutTo(uint32_t count) { count_ = count; }
  // Fills the header in and gives the record away. The bounds are the caller's to tell.
  RegionRecord* Finish(const RECT& bounds);

 private:
  bool Grow();

  // 16 KB of rectangles at the start, and more by as much, so that few reallocations are needed.
  static constexpr uint32_t kStep = 1024;
  RegionRecord* record_;
  uint32_t capacity_ = kStep;
  uint32_t count_ = 0;
};

}  // namespace vn

#endif
