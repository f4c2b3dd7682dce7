// One bitmap filled from another of other dimensions.
#include <algorithm>

#include <vncore/vncore.h>
#include "geometry/row_scaler.h"
#include "kernel/guards.h"
#include "kernel/pixel_format.h"
#include "kernel/progress.h"
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"
#include "kernel/stepper.h"

namespace {

bool HasStorage(const BitmapHandle* bitmap) { return bitmap && (bitmap->Flags & FLAG_ALLOCATED); }

// The steps along one axis. An axis that keeps its size steps by carries alone.
vn::Stepper StepOver(int32_t oldSize, int32_t newSize) {
  auto step = vn::Stepper::Dividing(static_cast<uint32_t>(oldSize), static_cast<uint32_t>(newSize));
  if (newSize >= oldSize && step.remainder == 0) {
    step.quotient = 0;
    step.remainder = step.divisor;
  }
  return step;
}

// Scales each source row that is needed once into `scaled`, and writes it as often as it is needed.
VnStatus ResizeRows(BitmapHandle* source, BitmapHandle* destination, vn::RowView rows,
                    uint8_t* scaled) {
  const auto height = static_cast<uint32_t>(destination->Height);
  const bool sameOrigin = source->ViewOrigin == destination->ViewOrigin;
  const auto oldWidth = static_cast<uint32_t>(source->Width);
  const auto newWidth = static_cast<uint32_t>(destination->Width);
  const vn::RowScaler scaler({source->BitsPerPixel, StepOver(source->Width, destination->Width), 0,
                              oldWidth, newWidth, destination->BytesPerLine, newWidth >= oldWidth},
                             height);
  vn::Stepper down = StepOver(source->Height, destination->Height);
  vn::Progress progress(height);
  if (!progress.Begin()) return progress.Result();
  uint32_t wanted = 0;
  uint32_t next = 0;  // source rows below this one have been scaled
  for (uint32_t row = 0; row < height; ++row) {
    if (next <= wanted) {
      scaler.Scale(rows.Read(wanted), scaled);
      next = wanted + 1;
    }
    wanted += down.Advance();
    Vn_PutBitmapRow(destination, scaled, sameOrigin ? row : height - 1 - row,
                    destination->BytesPerLine);
    if (!progress.Step()) break;
  }
  return progress.Result();
}

// Rows are scaled at the source's depth. A destination of another depth is the caller's mistake,
// but must not lead out of the buffer.
uint32_t ScaledRowBytes(const BitmapHandle& source, const BitmapHandle& destination) {
  return std::max(destination.BytesPerLine,
                  vn::StrideOf(static_cast<uint32_t>(destination.Width),
                               static_cast<uint32_t>(source.BitsPerPixel)));
}

}  // namespace

VnStatus VN_CALL Vn_ResizeBitmap(BitmapHandle* source, BitmapHandle* destination) {
  if (!HasStorage(source) || !HasStorage(destination)) return ERR_NO_BITMAP;
  vn::ScratchBuffer<uint8_t> sourceRow(source->BytesPerLine, vn::Fill::kZero);
  // Cleared, so that the fill at a row's end is the same in every result.
  vn::ScratchBuffer<uint8_t> scaled(ScaledRowBytes(*source, *destination), vn::Fill::kZero);
  if (!sourceRow || !scaled) return ERR_NO_MEMORY;
  const vn::BitmapLock lockSource(source);
  const vn::BitmapLock lockDestination(destination);
  return ResizeRows(source, destination, vn::RowView(source, sourceRow.data()), scaled.data());
}
