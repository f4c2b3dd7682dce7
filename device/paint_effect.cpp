// Painting in pieces: an effect's pieces are painted one by one, each as a paint of its own with
// the piece for its clip, so that it lands where the whole picture would have put it.
#include <optional>

#include "device/effect_pieces.h"
#include "device/paint_plan.h"
#include "device/paint_tools.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/rects.h"

namespace vn {
namespace {

// Paints pieces of one job, and tells and heeds the progress of it.
class PieceRunner final : public PieceSink {
 public:
  // `paints` is false for a job whose source is empty: it takes its time and shows nothing.
  PieceRunner(const PaintJob& job, bool paints) : job_(job), paints_(paints) {}

  VnStatus Run(uint32_t effect, const RECT& area) {
    WalkPieces(effect, area, *this);
    if (status_ == OK && count_ == Count::kEstimate) Heed(progress_->End());
    return status_;
  }

  bool Begin(uint32_t units, Count count) override {
    count_ = count;
    return Heed(progress_.emplace(units).Begin());
  }

  bool Unit(const RECT* pieces, size_t count) override {
    for (size_t i = 0; i < count; ++i) {
      status_ = Paint(pieces[i]);
      if (status_ != OK) return false;
    }
    return Heed(count_ == Count::kExact ? progress_->Step() : progress_->StepShortOfEnd());
  }

 private:
  bool Heed(bool goOn) {
    if (!goOn) status_ = progress_->Result();
    return goOn;
  }

  VnStatus Paint(const RECT& piece) {
    if (!paints_ || !IntersectRects(&job_.destinationClip, job_.destination, piece)) return OK;
    // What the plan depends on can only change while the caller has its say.
    if (!plan_ || planned_ != progress_->Calls()) {
      plan_ = PlanPaint(job_.hDC, job_.bitmap);
      planned_ = progress_->Calls();
      tools_.Forget();
    }
    return Render(job_, *plan_, &tools_);
  }

  PaintJob job_;
  bool paints_;
  std::optional<Progress> progress_;
  Count count_ = Count::kExact;
  std::optional<PaintPlan> plan_;
  uint32_t planned_ = 0;  // calls of the callback before the plan was made
  PaintTools tools_;
  VnStatus status_ = OK;
};

// Errors that spread would show the seams of the pieces, so a picture that they would reduce is
// reduced beforehand, once.
bool SpreadsErrors(HDC hDC, BitmapHandle* bitmap, int32_t* deviceBits) {
  const PaintPlan plan = PlanPaint(hDC, bitmap);
  *deviceBits = plan.deviceBits;
  return plan.kind == PAINT_DITHER && !(Vn_GetDisplayMode() & MODE_ORDERED_DITHER);
}

VnStatus Reduce(BitmapHandle* bitmap, BitmapHandle* reduced, int32_t bits) {
  const MutedStatus muted;
  return Vn_ColorResBitmap(bitmap, reduced, static_cast<uint32_t>(bits),
                           RES_FIXED_PALETTE | RES_DITHER_METHOD(DITHER_FLOYD_STEINBERG), nullptr,
                           0, nullptr, 0);
}

// Rows below this are short; see MODE_SHORT_ROWS.
constexpr uint32_t kLongRow = 16385;

VnStatus RunEffect(PaintJob job, const RECT* source, const RECT* sourceClip,
                   const RECT& destination, const RECT& area, uint32_t effect) {
  const DisplayModeScope mode(MODE_SHORT_ROWS,
                              job.bitmap->BytesPerLine < kLongRow ? uint32_t{MODE_SHORT_ROWS} : 0,
                              MODE_SHORT_ROWS);
  if (!ShowsSource(effect)) source = sourceClip = nullptr;
  const bool paints = PlanRects(&job, source, sourceClip, destination, nullptr);
  if (effect != EFFECT_PLAIN) return PieceRunner(job, paints).Run(effect, area);
  return PaintBitmap(job.hDC, job.bitmap, source, sourceClip, &destination, &area, job.rasterOp);
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_PaintDCEffect(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                                  const RECT* sourceClip, const RECT* destination,
                                  const RECT* destinationClip, uint32_t rasterOp, uint32_t effect) {
  using namespace vn;
  if (!bitmap || !hDC || !destination || !(bitmap->Flags & FLAG_ALLOCATED) ||
      effect >= EFFECT_COUNT) {
    return ERR_INVALID_PARAMETER;
  }
  RECT area = *destination;
  if (destinationClip) IntersectRects(&area, *destination, *destinationClip);
  if (RectIsEmpty(area)) return OK;

  ScratchBuffer<BitmapHandle> reduced(1, Fill::kZero);
  if (!reduced) return ERR_NO_MEMORY;
  PaintJob job{hDC, bitmap, {}, {}, {}, {}, {}, rasterOp};
  int32_t deviceBits = 0;
  if (SpreadsErrors(hDC, bitmap, &deviceBits)) {
    const VnStatus status = Reduce(bitmap, reduced.data(), deviceBits);
    if (status != OK) return status;
    job.bitmap = reduced.data();
  }
  const VnStatus status = RunEffect(job, source, sourceClip, *destination, area, effect);
  if (job.bitmap != bitmap) Vn_FreeBitmap(job.bitmap);
  return status;
}
