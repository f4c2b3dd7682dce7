// Painting rows that a caller holds, where a paint of the whole picture would put them.
#include <algorithm>

#include "device/paint_plan.h"
#include "device/paint_tools.h"
#include "device/scale_mapping.h"
#include "kernel/guards.h"
#include "kernel/rects.h"

namespace vn {
namespace {

// The rows that a buffer holds, as a rectangle of the bitmap.
RECT RowsOf(const BitmapHandle& bitmap, const CallerRows& rows) {
  const int64_t end = std::clamp<int64_t>(int64_t{rows.first} + rows.count, INT32_MIN, INT32_MAX);
  return {0, rows.first, bitmap.Width, static_cast<LONG>(end)};
}

// The rows in the order of a DIB while it lives: those of a picture whose top row comes first are
// turned over in place, and back. Without memory for a row they stay as they are.
class BottomUpRows {
 public:
  BottomUpRows(const BitmapHandle& bitmap, void* rows, int32_t count)
      : rows_(static_cast<uint8_t*>(rows)), count_(count), stride_(bitmap.BytesPerLine) {
    if (count < 2 || bitmap.ViewOrigin != VIEW_TOP_FIRST) return;
    wanted_ = true;
    spare_ = ScratchBuffer<uint8_t>(stride_);
    if (spare_) TurnOver();
  }
  BottomUpRows(const BottomUpRows&) = delete;
  BottomUpRows& operator=(const BottomUpRows&) = delete;
  ~BottomUpRows() {
    if (spare_) TurnOver();
  }

  // Whether the rows were to be turned over, be it that memory failed.
  bool Wanted() const { return wanted_; }

 private:
  void TurnOver() {
    uint8_t* low = rows_;
    uint8_t* high = rows_ + static_cast<size_t>(count_ - 1) * stride_;
    for (; low < high; low += stride_, high -= stride_) {
      std::memcpy(spare_.data(), low, stride_);
      std::memcpy(low, high, stride_);
      std::memcpy(high, spare_.data(), stride_);
    }
  }

  uint8_t* rows_;
  int32_t count_;
  size_t stride_;
  bool wanted_ = false;
  ScratchBuffer<uint8_t> spare_;
};

// Rows that need nothing done to them go out in one call, straight from the caller's memory: all of
// them, at their full width, from device column 0 on. That is right for a picture at the left edge
// without a clip, which is what a loader paints, and is kept for all others. The result is no
// status: BytesPerLine where the rows had to be turned over, else the usage of the colour table.
VnStatus SendRows(const PaintJob& job, void* rows, int32_t top) {
  const BitmapHandle& bitmap = *job.bitmap;
  const int32_t count = job.callerRows.count;
  BandTable table;
  table.SetRowColors(job);
  BITMAPINFOHEADER& header = table.info().header;
  header.biWidth = bitmap.Width;
  header.biHeight = count;
  header.biBitCount = static_cast<WORD>(bitmap.BitsPerPixel);
  header.biSizeImage = bitmap.BytesPerLine * static_cast<uint32_t>(count);
  const BottomUpRows bottomUp(bitmap, rows, count);
  StretchDIBits(job.hDC, 0, top, bitmap.Width, count, 0, 0, bitmap.Width, count, rows,
                table.info().Info(), table.usage(), job.rasterOp);
  return static_cast<VnStatus>(bottomUp.Wanted() ? bitmap.BytesPerLine : table.usage());
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_PaintDCBuffer(HDC hDC, BitmapHandle* bitmap, const RECT* source,
                                  const RECT* sourceClip, const RECT* destination,
                                  const RECT* destinationClip, uint32_t rasterOp, void* rows,
                                  int32_t firstRow, int32_t rowCount) {
  using namespace vn;
  if (!bitmap || !rows) return ERR_NO_BITMAP;
  if (!destination || !hDC) return ERR_INVALID_PARAMETER;
  PaintPlan plan = PlanPaint(hDC, bitmap);
  // Grays and votes need rows beyond the band.
  if (plan.kind > PAINT_DITHER) plan.kind = PAINT_DIRECT;
  const CallerRows band = {static_cast<const uint8_t*>(rows), firstRow, rowCount};
  PaintJob job{hDC, bitmap, band, {}, {}, {}, {}, rasterOp};
  if (!PlanRects(&job, source, sourceClip, *destination, destinationClip) ||
      !IntersectRects(&job.sourceClip, job.sourceClip, RowsOf(*bitmap, band))) {
    return OK;
  }
  if (plan.kind != PAINT_DIRECT || !SameSize(job.source, job.destination)) {
    PaintTools tools;
    return Render(job, plan, &tools);
  }
  BitmapLock lock(bitmap);
  ShiftMapping mapping;
  if (!MapUnscaled(job, &mapping)) {
    lock.Keep();  // a paint clipped away leaves its lock, a peculiarity that stays
    return OK;
  }
  return SendRows(job, rows, static_cast<int32_t>(mapping.device.top));
}
