// Vn_GrayScaleBitmap: any depth to 8-bit gray.
#include <cstring>

#include "color/gray_rows.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/replacement_bitmap.h"
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"

namespace vn {
namespace {

// Converts all rows. The buffers serve bitmaps in files only.
VnStatus GrayRows(BitmapHandle* source, BitmapHandle* target, const uint8_t* levels,
                  uint8_t* sourceBuffer, uint8_t* targetBuffer) {
  const GrayRow grays = SelectGrayRow(source->BitsPerPixel, source->ColorOrder);
  const auto width = static_cast<uint32_t>(source->Width);
  const uint32_t fill = target->BytesPerLine - width;
  const BitmapLock sourceLock(source), targetLock(target);
  RowView from(source, sourceBuffer), to(target, targetBuffer);
  Progress progress(static_cast<uint32_t>(source->Height));
  if (!progress.Begin()) return progress.Result();
  for (uint32_t row = 0; row < static_cast<uint32_t>(source->Height); ++row) {
    uint8_t* out = to.Target(row);
    grays(from.Read(row), out, width, levels);
    std::memset(out + width, 0, fill);
    to.Store(row);
    if (!progress.Step()) break;
  }
  return progress.Result();
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_GrayScaleBitmap(BitmapHandle* bitmap) {
  using namespace vn;
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  uint8_t levels[256];
  if (!HoldsGraySource(*bitmap) || !ReadGrayLevels(*bitmap, levels)) return ERR_NO_BITMAP;
  const ScratchBuffer<uint8_t> sourceRow(bitmap->BytesPerLine, Fill::kZero);
  if (!sourceRow) return ERR_NO_MEMORY;

  ReplacementBitmap gray(bitmap);
  // Whatever kept the storage from being made, it is told as exhausted memory.
  if (gray.CreateDerived(8) != OK) return ERR_NO_MEMORY;
  gray->Palette = Vn_CreateGrayPalette(8);
  gray->Flags |= FLAG_GRAY_PALETTE;
  Vn_CreatePaletteIndexes(gray.get());
  const ScratchBuffer<uint8_t> targetRow(gray->BytesPerLine);
  if (!targetRow) return ERR_NO_MEMORY;

  const VnStatus result = GrayRows(bitmap, gray.get(), levels, sourceRow.data(), targetRow.data());
  if (result == OK) gray.Commit();
  return result;
}
