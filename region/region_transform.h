// The arithmetic of a RegionTransform: one mapping for shapes that come in, one for shapes that go
// out. Values wrap in 32 bits.
#ifndef VNCORE_REGION_REGION_TRANSFORM_H
#define VNCORE_REGION_REGION_TRANSFORM_H

#include <vncore/vncore.h>

namespace vn {

// value * numerator / denominator, truncated. A denominator of 0 gives 0.
int32_t ScaleTruncated(int32_t value, int32_t numerator, int32_t denominator);

// Turns the rows of a rectangle over within `height`; columns within `width`.
void FlipRect(RECT* rect, int32_t height);
void ReverseRect(RECT* rect, int32_t width);

// A caller's transform against one bitmap. A null transform changes nothing.
class RegionMapping {
 public:
  // Whether a caller's transform may be used. Null may.
  static bool IsValid(const RegionTransform* transform);

  // `transform` is valid and outlives the mapping.
  RegionMapping(const BitmapHandle* bitmap, const RegionTransform* transform);

  // Whether it moves anything.
  bool Changes() const;
  // Caller's space to the bitmap's: offset, scale truncated, flip.
  void MapIn(RECT* rect) const;
  // The bitmap's space to the caller's: flip, scale, offset. Columns round up; rows round up for a
  // caller that counts from the bottom and are truncated for one that counts from the top.
  void MapOut(RECT* rect) const;
  // The first row of the caller's space, from `row` on, that any row of the bitmap shows; `end` when
  // there is none below it. So a walk takes no more steps than the bitmap, of `height`, has rows.
  int32_t NextRow(int32_t row, int32_t end, int32_t height) const;

 private:
  int64_t RowIn(int64_t row) const;

  int32_t height_;
  const RegionTransform* transform_;
  bool flip_ = false;
  bool scaleX_ = false;
  bool scaleY_ = false;
};

}  // namespace vn

#endif
