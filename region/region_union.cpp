#include "region/region_union.h"

#include <utility>

namespace vn {

bool RegionUnion::Add(const RECT& rect) {
  if (!batch_) batch_ = OwnedObject<HRGN>(CreateRectRgn(0, 0, 0, 0));
  if (!rect_) rect_ = OwnedObject<HRGN>(CreateRectRgn(0, 0, 0, 0));
  if (!batch_ || !rect_) return false;
  if (!SetRectRgn(rect_.get(), rect.left, rect.top, rect.right, rect.bottom)) return false;
  if (CombineRgn(batch_.get(), batch_.get(), rect_.get(), RGN_OR) == RGN_ERROR) return false;
  return ++inBatch_ < kBatch || Carry();
}

// The full batch goes to the lowest free level, together with all levels below.
bool RegionUnion::Carry() {
  inBatch_ = 0;
  for (auto& level : levels_) {
    if (!level) {
      level = std::move(batch_);
      return true;
    }
    if (CombineRgn(batch_.get(), level.get(), batch_.get(), RGN_OR) == RGN_ERROR) return false;
    level = OwnedObject<HRGN>();
  }
  return false;
}

HRGN RegionUnion::Finish() {
  if (!batch_) batch_ = OwnedObject<HRGN>(CreateRectRgn(0, 0, 0, 0));
  if (!batch_) return nullptr;
  for (auto& level : levels_) {
    if (!level) continue;
    if (CombineRgn(batch_.get(), level.get(), batch_.get(), RGN_OR) == RGN_ERROR) return nullptr;
    level = OwnedObject<HRGN>();
  }
  return batch_.Release();
}

}  // namespace vn
