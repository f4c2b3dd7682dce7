#include "region/band_builder.h"

#include <algorithm>

#include "kernel/thread_settings.h"

namespace vn {

void BandBuilder::CloseRow() {
  if (built_.count() == row_) return;
  ExtendBounds();
  if (!OnWin32s() && RepeatsBand()) {
    for (uint32_t i = band_; i < row_; ++i)
      ++built_[i].bottom;
    built_.CutTo(row_);
  } else {
    band_ = row_;
  }
  row_ = built_.count();
}

bool BandBuilder::RepeatsBand() {
  const uint32_t count = built_.count() - row_;
  if (row_ - band_ != count || built_[band_].bottom != built_[row_].top) return false;
  for (uint32_t i = 0; i < count; ++i) {
    if (built_[band_ + i].left != built_[row_ + i].left ||
        built_[band_ + i].right != built_[row_ + i].right) {
      return false;
    }
  }
  return true;
}

void BandBuilder::ExtendBounds() {
  const RECT &left = built_[row_], &right = built_[built_.count() - 1];
  if (bounds_.bottom == 0) bounds_ = {left.left, left.top, right.right, left.bottom};
  bounds_.left = std::min(bounds_.left, left.left);
  bounds_.right = std::max(bounds_.right, right.right);
  bounds_.bottom = left.bottom;
}

}  // namespace vn
