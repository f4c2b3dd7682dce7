// Rotation by any angle.
#include <vncore/vncore.h>
#include "geometry/fine_rotation.h"
#include "geometry/right_angle.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/replacement_bitmap.h"
#include "region/region_motion.h"

namespace {

// No turn at all is heard as one unit of work.
VnStatus TellOnly(int32_t statusStart, int32_t statusEnd) {
  vn::Progress progress(1, statusStart, statusEnd);
  if (progress.Begin()) progress.Step();
  return progress.Result();
}

VnStatus RotateByWalk(BitmapHandle* bitmap, int32_t angle, int32_t folded, bool resize,
                      COLORREF fillColor, int32_t statusStart, int32_t statusEnd) {
  const int32_t walkAngle = vn::WalkAngle(folded, bitmap->ViewOrigin == VIEW_BOTTOM_FIRST);
  const vn::PictureSize old = {bitmap->Width, bitmap->Height};
  const vn::PictureSize size = resize ? vn::InverseWalk::BoundingBox(old, walkAngle) : old;
  vn::ReplacementBitmap turned(bitmap);
  VnStatus status = turned.Create(size.width, size.height, bitmap->BitsPerPixel);
  if (status != OK) return status;
  {
    const vn::BitmapLock lockSource(bitmap);
    const vn::BitmapLock lockTurned(turned.get());
    vn::Progress progress(static_cast<uint32_t>(size.height), statusStart, statusEnd);
    status = vn::TurnByWalk(bitmap, turned.get(), vn::InverseWalk(old, size, walkAngle), fillColor,
                            progress);
    if (status == OK) status = vn::RotateRegion(turned.get(), old.width, old.height, angle);
  }
  if (status == OK) turned.Commit();
  return status;
}

}  // namespace

VnStatus VN_CALL Vn_IntRotateBitmapFine(BitmapHandle* bitmap, int32_t angle, int32_t resize,
                                        COLORREF fillColor, int32_t statusStart,
                                        int32_t statusEnd) {
  if (!vn::HoldsItsPixels(bitmap)) return ERR_NO_BITMAP;
  const int32_t folded = vn::FoldedAngle(angle);
  // A quarter turn that keeps the size of an oblong picture cuts it off, by the walk.
  const bool whole = resize || bitmap->Width == bitmap->Height;
  if (folded == 9000 && whole) {
    return vn::RotateRightAngle(bitmap, false, statusStart, statusEnd);
  }
  if (folded == 18000) return vn::RotateHalfTurn(bitmap, statusStart, statusEnd);
  if (folded == 27000 && whole) return vn::RotateRightAngle(bitmap, true, statusStart, statusEnd);
  if (folded == 0) return TellOnly(statusStart, statusEnd);
  return RotateByWalk(bitmap, angle, folded, resize, fillColor, statusStart, statusEnd);
}

VnStatus VN_CALL Vn_RotateBitmapFine(BitmapHandle* bitmap, int32_t angle, int32_t resize,
                                     COLORREF fillColor) {
  return Vn_IntRotateBitmapFine(bitmap, angle, resize, fillColor, 0, 100);
}

VnStatus VN_CALL Vn_RotateBitmap(BitmapHandle* bitmap, int32_t angle, int32_t resize) {
  // Wraps, as all angles fold.
  const auto hundredths = static_cast<int32_t>(static_cast<uint32_t>(angle) * 100);
  return Vn_IntRotateBitmapFine(bitmap, hundredths, resize, 0, 0, 100);
}
