// The turned region: rebuilt pixel by pixel, since a turned rectangle is none.
#include "geometry/fixed_sine.h"
#include "region/band_builder.h"
#include "region/region_motion.h"
#include "region/region_rows.h"
#include "region/region_store.h"

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
      if (!AddRow(y)) return nullptr;
      built_.CloseRow();
      column_.Add(-sin_);
      row_.Add(cos_);
    }
    return built_.Finish();
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
          if (start != end && !built_.AddRun(start, end, y)) return false;
          start = x;
        }
        end = x + 1;
      }
      moved = column.Add(cos_);
      if (row.Add(sin_)) moved = true;
    }
    return start == end || built_.AddRun(start, end, y);
  }

  int32_t width_, height_;
  int32_t cos_ = 0, sin_ = 0;
  FixedPoint column_{}, row_{};  // the source of the present row's first pixel
  RegionRows source_;
  BandBuilder built_;
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
