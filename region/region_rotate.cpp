// The turned region: rebuilt pixel by pixel, since a turned rectangle is none.
#include "geometry/fixed_sine.h"
#include "region/region_builder.h"
#include "region/region_motion.h"
#include "region/region_rows.h"
#include "region/region_store.h"

#include <algorithm>

#include "kernel/thread_settings.h"

namespace vn {
namespace {

// A coordinate on its way: whole pixels, and a fraction in 14 bits that carries the sign of the
// value it came from.
struct FixedPoint {
  int32_t whole;
  int32_t fraction;

  // `value` in 14-bit fixed point, truncated, from `origin` on.
  static FixedPoint At(uint32_t value, int32_t origin) {
    const auto number = static_cast<int32_t>(value);
    return {Trunc14(number) + origin, Remainder14(number)};
  }

  // Adds at most one pixel. True when the whole pixel changed.
  bool Add(int32_t step) {
    fraction += step;
    if (fraction >= kFixedOne) {
      fraction -= kFixedOne;
      ++whole;
      return true;
    }
    if (fraction < 1 - kFixedOne) {
      fraction += kFixedOne;
      --whole;
      return true;
    }
    return false;
  }
};

class Rotation {
 public:
  Rotation(const BitmapHandle* bitmap, int32_t oldWidth, int32_t oldHeight, int32_t angle)
      : width_(bitmap->Width), height_(bitmap->Height), source_(bitmap->Region) {
    int32_t turn = static_cast<int32_t>(0u - static_cast<uint32_t>(angle)) % 36000;
    if (turn < 0) turn += 36000;
    if (bitmap->ViewOrigin == VIEW_BOTTOM_FIRST) turn = 36000 - turn;
    cos_ = FixedCos(turn);
    sin_ = FixedSin(turn);
    const auto c = static_cast<uint32_t>(cos_), s = static_cast<uint32_t>(sin_);
    const auto cx = static_cast<uint32_t>(width_ / 2), cy = static_cast<uint32_t>(height_ / 2);
    column_ = FixedPoint::At(s * cy - c * cx, oldWidth / 2);
    row_ = FixedPoint::At(0u - (s * cx + c * cy), oldHeight / 2);
  }

  // The new record, or null when memory failed.
  RegionRecord* Run() {
    if (!built_) return nullptr;
    for (int32_t y = 0; y < height_; ++y) {
      const uint32_t first = built_.count();
      if (!AddRow(y)) return nullptr;
      CloseRow(first);
      column_.Add(-sin_);
      row_.Add(cos_);
    }
    return built_.Finish(bounds_);
  }

 private:
  bool AddRow(int32_t y) {
    FixedPoint column = column_, row = row_;
    bool inside = false, moved = true;
    int32_t start = 0, end = 0;  // the run so far
    for (int32_t x = 0; x < width_; ++x) {
      if (moved) inside = source_.Contains(row.whole, column.whole);
      if (inside) {
        if (end != x || start == end) {
          if (start != end && !built_.Append({start, y, end, y + 1})) return false;
          start = x;
        }
        end = x + 1;
      }
      moved = column.Add(cos_);
      if (row.Add(sin_)) moved = true;
    }
    return start == end || built_.Append({start, y, end, y + 1});
  }

  // Joins the row from `first` on to the band above when their runs are the same, as the platform's
  // lists have it; a list that was scanned on Win32s has single rows.
  void CloseRow(uint32_t first) {
    const uint32_t count = built_.count() - first;
    if (count == 0) return;
    Extend(first);
    if (!OnWin32s() && first - band_ == count && built_[band_].bottom == built_[first].top &&
        SameRuns(first, count)) {
      for (uint32_t i = 0; i < count; ++i)
        ++built_[band_ + i].bottom;
      built_.CutTo(first);
    } else {
      band_ = first;
    }
  }

  bool SameRuns(uint32_t first, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i) {
      if (built_[band_ + i].left != built_[first + i].left ||
          built_[band_ + i].right != built_[first + i].right) {
        return false;
      }
    }
    return true;
  }

  void Extend(uint32_t first) {
    const RECT &left = built_[first], &right = built_[built_.count() - 1];
    if (bounds_.bottom == 0) bounds_ = {left.left, left.top, right.right, left.bottom};
    bounds_.left = std::min(bounds_.left, left.left);
    bounds_.right = std::max(bounds_.right, right.right);
    bounds_.bottom = left.bottom;
  }

  int32_t width_, height_;
  int32_t cos_ = 0, sin_ = 0;
  FixedPoint column_{}, row_{};  // the source of the present row's first pixel
  RegionRows source_;
  RegionBuilder built_;
  uint32_t band_ = 0;  // where the last band begins
  RECT bounds_{0, 0, 0, 0};
};

}  // namespace

VnStatus RotateRegion(BitmapHandle* bitmap, int32_t oldWidth, int32_t oldHeight, int32_t angle) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!bitmap->Region) return OK;
  RegionRecord* turned = Rotation(bitmap, oldWidth, oldHeight, angle).Run();
  if (!turned) return ERR_NO_MEMORY;
  AttachRegion(bitmap, turned);
  return OK;
}

}  // namespace vn
