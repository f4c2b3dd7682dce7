// A bitmap replaced by a filtered copy of another size.
#include <algorithm>
#include <cstring>
#include <optional>

#include <vncore/vncore.h>
#include "geometry/blend_rows.h"
#include "geometry/resample_axis.h"
#include "geometry/resample_rows.h"
#include "geometry/row_cells.h"
#include "geometry/row_spans.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/replacement_bitmap.h"
#include "region/region_motion.h"

namespace vn {
namespace {

// Source rows at the new width.
class NewWidthRows {
 public:
  NewWidthRows(ResampleSource* source, const ResampleAxis& across, uint32_t channels)
      : source_(source), bytes_(size_t{across.newSize} * channels) {
    if (across.newSize > across.oldSize) spans_.emplace(across, channels);
    if (across.newSize < across.oldSize) cells_.emplace(across, channels);
  }

  size_t bytes() const { return bytes_; }

  // Row `row`, in `buffer` or where it lies. It stays as long as the buffer does.
  const uint8_t* Read(uint32_t row, uint8_t* buffer) {
    const uint8_t* const wide = source_->Read(row);
    if (!spans_ && !cells_ && source_->RowsStay()) return wide;
    Fit(wide, buffer);
    return buffer;
  }

 private:
  void Fit(const uint8_t* wide, uint8_t* buffer) const {
    if (spans_) {
      spans_->Interpolate(wide, buffer);
    } else if (cells_) {
      cells_->Average(wide, buffer);
    } else {
      std::memcpy(buffer, wide, bytes_);
    }
  }

  ResampleSource* source_;
  size_t bytes_;
  std::optional<RowSpans> spans_;
  std::optional<RowCells> cells_;
};

// Each new row is the average of its cell of old ones. The sizes of the cells sum to the old
// height.
VnStatus ShrinkRows(NewWidthRows* source, const ResampleAxis& down, ResampleTarget* target) {
  ScratchBuffer<uint8_t> buffer(source->bytes());
  RowAverage average(source->bytes(), down.LargestSize());
  if (!buffer || !average) return ERR_NO_MEMORY;
  Stepper cells = down.Sizes();
  Progress progress(down.newSize);
  if (!progress.Begin()) return progress.Result();
  uint32_t next = 0;
  for (uint32_t row = 0; row < down.newSize; ++row) {
    const uint32_t size = cells.Advance();
    for (uint32_t i = 0; i < size; ++i)
      average.Add(source->Read(next++, buffer.data()), i == 0);
    average.Write(size, target->Make(row));
    target->Write(row);
    if (!progress.Step()) break;
  }
  return progress.Result();
}

// Each old row begins a span of new ones on the way to the next old row. The half span before the
// first one repeats it, which counts as no progress.
VnStatus EnlargeRows(NewWidthRows* source, const ResampleAxis& down, ResampleTarget* target) {
  ScratchBuffer<uint8_t> buffers[2] = {ScratchBuffer<uint8_t>(source->bytes()),
                                       ScratchBuffer<uint8_t>(source->bytes())};
  if (!buffers[0] || !buffers[1]) return ERR_NO_MEMORY;
  const RowBlend blend(source->bytes());
  Stepper spans = down.Sizes();
  const uint8_t* next = source->Read(0, buffers[0].data());
  Progress progress(down.newSize);
  if (!progress.Begin()) return progress.Result();
  uint32_t row = 0;
  for (uint32_t old = 1; row < down.newSize; ++old) {
    const uint8_t* const current = next;
    if (old < down.oldSize) next = source->Read(old, buffers[old % 2].data());
    const uint32_t span = spans.Advance();
    for (uint32_t step = 0; step < span && row < down.newSize; ++step) {
      blend(current, next, step, span, target->Make(row));
      target->Write(row++);
      for (uint32_t i = row == 1 ? down.Lead() : 0; i > 0; --i)
        target->Repeat(row++);
      if (!progress.Step()) return progress.Result();
    }
  }
  return progress.Result();
}

VnStatus Resample(BitmapHandle* bitmap, BitmapHandle* result) {
  const BitmapLock lockSource(bitmap);
  const BitmapLock lockResult(result);
  const ResampleColors colors(bitmap);
  ResampleSource source(bitmap, colors);
  ResampleTarget target(result, colors);
  if (!source) return ERR_NO_MEMORY;
  const VnStatus status = target.Prepare();
  if (status != OK) return status;
  const auto axis = [](int32_t from, int32_t to) {
    return ResampleAxis{static_cast<uint32_t>(from), static_cast<uint32_t>(to)};
  };
  NewWidthRows rows(&source, axis(bitmap->Width, result->Width), colors.channels);
  const ResampleAxis down = axis(bitmap->Height, result->Height);
  return down.Enlarges() ? EnlargeRows(&rows, down, &target) : ShrinkRows(&rows, down, &target);
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_ResampleBitmap(BitmapHandle* bitmap, int32_t width, int32_t height) {
  using namespace vn;
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  if (width < 1 || height < 1 || bitmap->Width < 1 || bitmap->Height < 1) {
    return ERR_INVALID_PARAMETER;
  }
  // Rows are worked on at 24 bits, where they can be too long for 32-bit strides.
  if (!SizeFits(std::max(bitmap->Width, width), 1, 32)) return ERR_NO_MEMORY;
  ReplacementBitmap resampled(bitmap);
  VnStatus status = resampled.Create(width, height, bitmap->BitsPerPixel);
  if (status == OK) status = Resample(bitmap, resampled.get());
  // The record still has the old size, of which the region is scaled. The region's block stays
  // where it is, and both records name it.
  if (status == OK) status = ScaleRegion(bitmap, width, height);
  if (status == OK) resampled.Commit();
  return status;
}
