// The bitmap, or its region, filled with one colour or with pixel value 0.
#include <algorithm>

#include <vncore/vncore.h>
#include "color/color_match.h"
#include "compose/pixel_pattern.h"
#include "compose/row_segments.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/row_position.h"

namespace {

using namespace vn;

// A region, or the whole bitmap, and the row of the whole width that goes into each of its rows.
struct Job {
  BitmapHandle* bitmap;
  const uint8_t* row;
  RECT bounds;
  RowSegments* segments;
};

// What a write to a temporary file returns is not looked at: callers have it so.
void WriteRow(const Job& job, int32_t row) {
  job.segments->Load(row);
  Vn_PutBitmapRowSegments(job.bitmap, job.row, static_cast<uint32_t>(row), 0, job.segments->data(),
                          job.segments->count());
}

// No region, and no fill behind the pixels of a row: the pixels are one stretch of memory.
bool IsOneStretch(const BitmapHandle& bitmap) {
  return !bitmap.Region && bitmap.Width > 0 && bitmap.Height > 0 &&
         static_cast<uint64_t>(bitmap.Width) * static_cast<uint32_t>(bitmap.BitsPerPixel) ==
             uint64_t{bitmap.BytesPerLine} * 8;
}

// From 8 bits up the runs in memory take the pixel itself, which spares reading the row. Pixels
// that share a byte make rows of one byte value.
void WriteMemory(const Job& job) {
  BitmapHandle* bitmap = job.bitmap;
  const uint32_t pixelBytes = std::max(bitmap->BitsPerPixel / 8, 1);
  uint32_t area = 0;
  Vn_GetBitmapRgnArea(bitmap, &area);
  const PixelPattern pattern(job.row, pixelBytes,
                             uint64_t{area} * static_cast<uint32_t>(bitmap->BitsPerPixel) / 8);
  if (IsOneStretch(*bitmap)) {
    pattern.Write(bitmap->Bits,
                  size_t{bitmap->BytesPerLine} * static_cast<uint32_t>(bitmap->Height));
    MoveToRow(bitmap, static_cast<uint32_t>(bitmap->Height) - 1);
    return;
  }
  for (int32_t row = job.bounds.top; row < job.bounds.bottom; ++row) {
    if (bitmap->BitsPerPixel < 8) {
      WriteRow(job, row);
      continue;
    }
    job.segments->Load(row);
    const int32_t* runs = job.segments->data();
    const int32_t* end = runs + job.segments->count();
    if (runs == end) continue;
    uint8_t* at = bitmap->Bits + MoveToRow(bitmap, static_cast<uint32_t>(row));
    for (; runs != end; runs += 2) {
      pattern.Write(at + static_cast<size_t>(runs[0]) * pixelBytes,
                    static_cast<size_t>(runs[1] - runs[0]) * pixelBytes);
    }
  }
}

// A memory bitmap is one unit of progress, a temporary file as many as there are rows.
VnStatus Write(const Job& job) {
  const bool onDisk = job.bitmap->Flags & FLAG_ON_DISK;
  const RECT& bounds = job.bounds;
  if (onDisk && bounds.bottom <= bounds.top) return OK;
  Progress progress(onDisk ? static_cast<uint32_t>(bounds.bottom - bounds.top) : 1);
  if (!progress.Begin()) return progress.Result();
  if (PixelAddress(*job.bitmap)) {
    WriteMemory(job);
  } else {
    for (int32_t row = bounds.top; row < bounds.bottom; ++row) {
      WriteRow(job, row);
      if (onDisk && !progress.Step()) return progress.Result();
    }
  }
  if (!onDisk) progress.Step();
  return progress.Result();
}

// A record without storage counts as done.
VnStatus WriteNothing() {
  Progress progress(1);
  if (progress.Begin()) progress.Step();
  return progress.Result();
}

// `prepare` writes the row that is filled in.
template <class Prepare>
VnStatus FillWith(BitmapHandle* bitmap, Prepare prepare) {
  RECT bounds;
  const VnStatus status = Vn_GetBitmapRgnBounds(bitmap, nullptr, &bounds);
  if (status != OK) return status;
  if (!HasPixels(*bitmap)) return WriteNothing();
  ScratchBuffer<uint8_t> row(bitmap->BytesPerLine, Fill::kZero);
  if (!row) return ERR_NO_MEMORY;
  RowSegments segments(bitmap);
  if (!segments) return ERR_NO_MEMORY;
  const BitmapLock lock(bitmap);
  prepare(row.data());
  return Write({bitmap, row.data(), bounds, &segments});
}

}  // namespace

VnStatus VN_CALL Vn_FillBitmap(BitmapHandle* bitmap, COLORREF color) {
  return FillWith(bitmap, [=](uint8_t* row) {
    const int32_t columns = std::clamp(bitmap->Width, 0, ColumnsInRow(*bitmap));
    FillRowColor(bitmap, color, row, static_cast<uint32_t>(columns));
  });
}

VnStatus VN_CALL Vn_ClearBitmap(BitmapHandle* bitmap) {
  return FillWith(bitmap, [](uint8_t*) {});  // the buffer comes as zeros
}
