// A bitmap slanted: rows moved to the side by an offset that grows from the picture's bottom to its
// top. A vertical shear is one of the picture turned by a quarter.
#include <algorithm>
#include <utility>

#include <vncore/vncore.h>
#include "geometry/fixed_sine.h"
#include "geometry/right_angle.h"
#include "geometry/row_block.h"
#include "geometry/shear_row.h"
#include "kernel/guards.h"
#include "kernel/owned_bitmap.h"
#include "kernel/progress.h"
#include "kernel/replacement_bitmap.h"

namespace vn {
namespace {

constexpr int32_t kSteepest = 4500;        // hundredths of a degree
constexpr int64_t kLongestRow = 32768;     // bytes; longer rows are not made
constexpr int32_t kTurnPercent = 20;       // of the progress: each quarter turn
constexpr int32_t kMirrorPercent = 5;      // and each of the mirrorings that a slant to the left
                                           // stands for
constexpr uint32_t kBlockBytes = 1 << 20;  // of the rows of a file

// How far rows have moved, in pixels: the tangent of the angle for each row, as quotient and
// remainder. A whole pixel is only counted when the remainders exceed it.
class Slope {
 public:
  explicit Slope(int32_t angle)
      : sine_(kSineTable[static_cast<size_t>(angle)]),
        cosine_(kSineTable[static_cast<size_t>(9000 - angle)]) {}

  // By how much `height` rows widen the picture.
  int64_t Widening(int32_t height) const { return int64_t{sine_} * height / cosine_; }

  uint32_t Offset() const { return offset_; }
  void Step() {
    offset_ += static_cast<uint32_t>(sine_ / cosine_);
    rest_ += sine_ % cosine_;
    if (rest_ <= cosine_) return;
    rest_ -= cosine_;
    ++offset_;
  }

 private:
  int32_t sine_, cosine_;
  int32_t rest_ = 0;
  uint32_t offset_ = 0;
};

// One shear. The caller's bitmap is turned for it where it is vertical, and nothing else.
class Shear {
 public:
  Shear(BitmapHandle* bitmap, int32_t angle, bool vertical, COLORREF fillColor)
      : bitmap_(bitmap),
        leftward_(angle < 0),
        vertical_(vertical),
        fillColor_(fillColor),
        slope_(leftward_ ? -angle : angle),
        callback_(Vn_GetStatusCallBack()) {}

  VnStatus Run();

 private:
  VnStatus Create();
  VnStatus TellMirrored();
  bool MoveRows(VnStatus* status);
  VnStatus MirrorAgain();
  void TurnBack();
  void TurnBackTelling();

  BitmapHandle* bitmap_;
  OwnedBitmap sheared_;
  bool leftward_, vertical_;
  COLORREF fillColor_;
  Slope slope_;
  VnStatusCallBack callback_;
  int32_t percent_ = 0;
  bool told_ = false;
};

// What mirroring the bitmap before the shear, and the result after it, would report: rows that
// slant to the left are laid where they belong instead.
VnStatus Shear::TellMirrored() {
  if (!leftward_) return OK;
  VnStatus status = OK;
  if (callback_) status = callback_(percent_);
  percent_ += kMirrorPercent;
  told_ = true;
  if (callback_ && status == OK) status = callback_(percent_);
  return status;
}

VnStatus Shear::Create() {
  const int32_t width = bitmap_->Width + static_cast<int32_t>(slope_.Widening(bitmap_->Height));
  if (!SizeFits(width, bitmap_->Height, bitmap_->BitsPerPixel)) return ERR_NO_MEMORY;
  return Vn_CreateBitmap(sheared_, STORAGE_AUTO, static_cast<uint32_t>(width),
                         static_cast<uint32_t>(bitmap_->Height), bitmap_->BitsPerPixel,
                         bitmap_->ColorOrder, bitmap_->DibColors, bitmap_->ViewOrigin);
}

// Fills the new bitmap. Rows that a stop keeps from their turn hold the colour alone; `status` is
// then what the callback returned. False when memory failed.
bool Shear::MoveRows(VnStatus* status) {
  const auto width = static_cast<uint32_t>(bitmap_->Width);
  const auto height = static_cast<uint32_t>(bitmap_->Height);
  const uint32_t most = static_cast<uint32_t>(sheared_->Width) - width;
  const BitmapLock lockSource(bitmap_);
  const BitmapLock lockTarget(sheared_);
  const ShearRow shearRow(sheared_, fillColor_, width);
  RowBlock from(bitmap_, kBlockBytes), to(sheared_, kBlockBytes);
  if (!shearRow || !from || !to) return false;

  const int32_t end = 100 - (vertical_ ? kTurnPercent : 0) - (leftward_ ? kMirrorPercent : 0);
  Progress progress(height, percent_, end);
  bool goOn = told_ || progress.Begin();
  const bool rising = bitmap_->ViewOrigin == VIEW_BOTTOM_FIRST;
  const uint32_t block = std::min({from.Capacity(), to.Capacity(), height});
  for (uint32_t done = 0; done < height; done += block) {
    const uint32_t count = std::min(block, height - done);
    const uint32_t first = rising ? done : height - done - count;
    from.Load(first, count);
    to.Begin(first);
    for (uint32_t i = 0; i < count; ++i) {
      const uint32_t row = rising ? first + i : first + count - 1 - i;
      if (!goOn) {
        shearRow.WriteFill(to.Row(row));
        continue;
      }
      const uint32_t offset = leftward_ ? most - slope_.Offset() : slope_.Offset();
      shearRow.Write(from.Row(row), offset, to.Row(row));
      slope_.Step();
      goOn = progress.Step();
    }
    to.Store(first, count);
  }
  percent_ = progress.Percent();
  *status = progress.Result();
  return true;
}

// The report behind the second mirroring. A callback that stops it only has the result mirrored
// once more, and is asked again.
VnStatus Shear::MirrorAgain() {
  for (;;) {
    percent_ += kMirrorPercent;
    if (!callback_ || callback_(percent_) == OK) return OK;
    const MutedStatus mute;
    const VnStatus status = Vn_ReverseBitmap(sheared_);
    if (status != OK) return status;
  }
}

// Undoes the turn of the caller's bitmap.
void Shear::TurnBack() {
  const MutedStatus mute;
  if (vertical_) Vn_RotateBitmap(bitmap_, -90, 1);
}

// The same with the callback hearing of it, and of the mirroring that is undone before it.
void Shear::TurnBackTelling() {
  if (leftward_) {
    const auto height = static_cast<uint32_t>(bitmap_->Height);
    Progress progress(height);
    bool goOn = progress.Begin();
    for (uint32_t row = 0; goOn && row < height; ++row)
      goOn = progress.Step();
  }
  Vn_RotateBitmap(bitmap_, -90, 1);
}

VnStatus Shear::Run() {
  if (vertical_) {
    const VnStatus turned = RotateRightAngle(bitmap_, true, 0, kTurnPercent);
    if (turned != OK) return turned;
    percent_ = kTurnPercent;
  }
  VnStatus status = TellMirrored();
  // Rows that would be too long are no failure: the bitmap stays as it is.
  const int64_t width = bitmap_->Width + slope_.Widening(bitmap_->Height);
  const bool tooLong = bitmap_->BitsPerPixel * width / 8 > kLongestRow;
  if (status == OK && !tooLong) status = Create();
  // Nor is it one when there is no memory for the rows to work on.
  VnStatus moved = OK;
  if (status != OK || tooLong || !MoveRows(&moved)) {
    TurnBack();
    return status;
  }
  if (leftward_) {
    moved = OK;
    status = MirrorAgain();
    if (status != OK) {
      TurnBack();
      return status;
    }
  }
  if (vertical_) {
    status = RotateRightAngle(sheared_, false, percent_, 100);
    if (status != OK) {
      TurnBackTelling();
      return status;
    }
  }
  std::swap(*bitmap_, *sheared_.get());
  return moved;
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_ShearBitmap(BitmapHandle* bitmap, int32_t angle, int32_t horizontal,
                                COLORREF fillColor) {
  using namespace vn;
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  if (angle < -kSteepest || angle > kSteepest) return ERR_INVALID_PARAMETER;
  if (!HoldsItsPixels(bitmap)) return ERR_NO_BITMAP;
  // The new bitmap takes its palette from the table. It has the table in index form, as any bitmap
  // with a palette of its own; an old one that stays gets back the form that it had.
  const ColorForm colors(bitmap);
  return Shear(bitmap, angle, horizontal == 0, fillColor).Run();
}
