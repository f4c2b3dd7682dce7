// The bitmap, or its region, filled with one colour or with pixel value 0.
#include "color/color_match.h"
#include "compose/row_segments.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/vncore.h"

namespace {

using namespace vn;

// Writes `buffer`, a row of the whole width, to every row of `bounds`. A memory bitmap is one unit
// of progress. What a write to a temporary file returns is not looked at: callers have it so.
VnStatus WriteRows(BitmapHandle* bitmap, const uint8_t* buffer, const RECT& bounds,
                   RowSegments* segments) {
  const bool onDisk = bitmap->Flags & FLAG_ON_DISK;
  if (onDisk && bounds.bottom <= bounds.top) return OK;
  Progress progress(onDisk ? static_cast<uint32_t>(bounds.bottom - bounds.top) : 1);
  if (!progress.Begin()) return progress.Result();
  for (int32_t row = bounds.top; row < bounds.bottom; ++row) {
    segments->Load(row);
    Vn_PutBitmapRowSegments(bitmap, buffer, static_cast<uint32_t>(row), 0, segments->data(),
                            segments->count());
    if (onDisk && !progress.Step()) return progress.Result();
  }
  if (!onDisk) progress.Step();
  return progress.Result();
}

// `prepare` writes the row that is filled in.
template <class Prepare>
VnStatus FillWith(BitmapHandle* bitmap, Prepare prepare) {
  RECT bounds;
  const VnStatus status = Vn_GetBitmapRgnBounds(bitmap, nullptr, &bounds);
  if (status != OK) return status;
  ScratchBuffer<uint8_t> buffer(bitmap->BytesPerLine, Fill::kZero);
  if (!buffer) return ERR_NO_MEMORY;
  RowSegments segments(bitmap);
  if (!segments) return ERR_NO_MEMORY;
  const BitmapLock lock(bitmap);
  prepare(buffer.data());
  return WriteRows(bitmap, buffer.data(), bounds, &segments);
}

}  // namespace

VnStatus VN_CALL Vn_FillBitmap(BitmapHandle* bitmap, COLORREF color) {
  return FillWith(bitmap, [=](uint8_t* row) {
    FillRowColor(bitmap, color, row, static_cast<uint32_t>(bitmap->Width));
  });
}

VnStatus VN_CALL Vn_ClearBitmap(BitmapHandle* bitmap) {
  return FillWith(bitmap, [](uint8_t*) {});  // the buffer comes as zeros
}
