// The plan of a paint: which part of the bitmap goes where on the device, and by which renderer.
#ifndef VNCORE_DEVICE_PAINT_PLAN_H
#define VNCORE_DEVICE_PAINT_PLAN_H

#include "device/paint_job.h"

namespace vn {

// Vn_PaintDC without its checks, for the library's own paints.
VnStatus PaintBitmap(HDC hDC, BitmapHandle* bitmap, const RECT* source, const RECT* sourceClip,
                     const RECT* destination, const RECT* destinationClip, uint32_t rasterOp);

// How the rows of a bitmap go to a device, see Vn_GetDitherFlags.
struct PaintPlan {
  int32_t deviceBits = 0;
  int32_t kind = PAINT_DIRECT;
};
PaintPlan PlanPaint(HDC hDC, BitmapHandle* bitmap);

// Fills in the rectangles of a job, cut by their clips and by its bitmap; null pointers as in
// Vn_PaintDC. False when nothing is left to paint.
bool PlanRects(PaintJob* job, const RECT* source, const RECT* sourceClip, const RECT& destination,
               const RECT* destinationClip);

// Locks the bitmap and runs the renderer for the plan. Paints of a series share their tools.
VnStatus Render(const PaintJob& job, const PaintPlan& plan, PaintTools* tools);

// True when the two need no scaling. A destination with its bottom above its top counts by
// magnitude.
bool SameSize(const RECT& source, const RECT& destination);

}  // namespace vn

#endif
