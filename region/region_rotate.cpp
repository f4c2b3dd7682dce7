// The turned region: rebuilt pixel by pixel, since a turned rectangle is none.
#include "geometry/inverse_walk.h"
#include "region/band_builder.h"
#include "region/region_motion.h"
#include "region/region_rows.h"
#include "region/region_store.h"

namespace vn {
namespace {

class Rotation {
 public:
  Rotation(const BitmapHandle* bitmap, PictureSize old, int32_t walkAngle)
      : width_(bitmap->Width),
        height_(bitmap->Height),
        walk_(old, {width_, height_}, walkAngle),
        source_(bitmap->Region) {}

  // The new record, or null when memory failed.
  RegionRecord* Run() {
    if (!built_) return nullptr;
    for (int32_t y = 0; y < height_; ++y) {
      if (!AddRow(y)) return nullptr;
      built_.CloseRow();
    }
    return built_.Finish();
  }

 private:
  bool AddRow(int32_t y) {
    const WalkRow first = walk_.Row(static_cast<uint32_t>(y));
    WalkCoordinate column = first.x, row = first.y;
    bool inside = false, moved = true;
    int32_t start = 0, end = 0;  // the run so far
    for (int32_t x = 0; x < width_; ++x) {
      if (moved) {
        inside =
            source_.Contains(static_cast<int32_t>(row.whole), static_cast<int32_t>(column.whole));
      }
      if (inside) {
        if (end != x || start == end) {
          if (start != end && !built_.AddRun(start, end, y)) return false;
          start = x;
        }
        end = x + 1;
      }
      moved = column.Step(walk_.stepX());
      if (row.Step(walk_.stepY())) moved = true;
    }
    return start == end || built_.AddRun(start, end, y);
  }

  int32_t width_, height_;
  InverseWalk walk_;
  RegionRows source_;
  BandBuilder built_;
};

}  // namespace

VnStatus RotateRegion(BitmapHandle* bitmap, int32_t oldWidth, int32_t oldHeight, int32_t angle) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (!bitmap->Region) return OK;
  const int32_t walkAngle = WalkAngle(FoldedAngle(angle), bitmap->ViewOrigin == VIEW_BOTTOM_FIRST);
  RegionRecord* turned = Rotation(bitmap, {oldWidth, oldHeight}, walkAngle).Run();
  if (!turned) return ERR_NO_MEMORY;
  AttachRegion(bitmap, turned);
  return OK;
}

}  // namespace vn
