// The union of many rectangles as a platform region.
#ifndef VNCORE_REGION_REGION_UNION_H
#define VNCORE_REGION_REGION_UNION_H

#include <vncore/vncore.h>
#include "kernel/platform_objects.h"

namespace vn {

// One region combined with n rectangles in turn takes n times its own growing length. Here regions
// of like size are combined, as the digits of a binary counter carry: n log n in all.
class RegionUnion {
 public:
  // False when a platform call failed; the union is of no use then.
  bool Add(const RECT& rect);
  // The caller's region, or null when a platform call failed.
  HRGN Finish();

 private:
  bool Carry();

  static constexpr int kLevels = 32;
  static constexpr int kBatch = 16;  // rectangles that go into a region one by one

  OwnedObject<HRGN> levels_[kLevels];  // level i: 2^i batches, or nothing
  OwnedObject<HRGN> batch_;
  OwnedObject<HRGN> rect_;
  int inBatch_ = 0;
};

}  // namespace vn

#endif
