#include "device/row_output.h"

#include "color/palettes.h"

namespace vn {

VnStatus RowOutput::Prepare(const PaintJob& job, int32_t deviceBits, int32_t kind, uint64_t pixels,
                            uint64_t rows, PaintScratch* scratch) {
  if (!bitmap_) {
    const VnStatus status = Choose(*job.bitmap, deviceBits, kind, scratch);
    if (status != OK) return status;
    bitmap_ = job.bitmap;
  }
  if (!diffuses_) return OK;
  PrepareWave(job, pixels, rows, scratch);
  if (wave_) return OK;
  errors_ = scratch->Zeroed<DiffusionCell>(PaintSlot::kErrors, pixels);
  return errors_ ? OK : ERR_NO_MEMORY;
}

// A group's rows are read before the rows below it have gone out. That can be seen when a bitmap is
// painted on itself: on a device of its own depth.
void RowOutput::PrepareWave(const PaintJob& job, uint64_t pixels, uint64_t rows,
                            PaintScratch* scratch) {
  wave_ = {};
  const BitmapHandle& bitmap = *job.bitmap;
  if (bitmap.BitsPerPixel == bits_ && !job.apart) return;
  const DiffusionWave::Form form = {bitmap.BitsPerPixel,
                                    bitmap.BitsPerPixel > 8 && bitmap.ColorOrder != ORDER_BGR,
                                    colors_,
                                    DITHER_FLOYD_STEINBERG,
                                    bits_,
                                    pixels,
                                    rows};
  const uint64_t bytes = DiffusionWave::MemoryFor(form);
  uint8_t* const memory = bytes ? scratch->Zeroed<uint8_t>(PaintSlot::kWave, bytes) : nullptr;
  if (memory) wave_ = DiffusionWave(form, memory);
}

VnStatus RowOutput::Choose(const BitmapHandle& bitmap, int32_t deviceBits, int32_t kind,
                           PaintScratch* scratch) {
  bits_ = bitmap.BitsPerPixel;
  if (kind == PAINT_DITHER) return ChooseDither(bitmap, deviceBits, scratch);
  if (kind == PAINT_EXPAND) {
    expand_ = SelectExpandRow(bits_);
    if (!expand_) return ERR_INVALID_PARAMETER;
    bits_ = 24;
  }
  return OK;
}

VnStatus RowOutput::ChooseDither(const BitmapHandle& bitmap, int32_t deviceBits,
                                 PaintScratch* scratch) {
  bits_ = deviceBits;
  dither_ = SelectDitherRow(bitmap.BitsPerPixel, deviceBits);
  if (!dither_) return ERR_INVALID_PARAMETER;
  if (bitmap.BitsPerPixel <= 8) {
    colors_ = scratch->Zeroed<RGBQUAD>(PaintSlot::kColors, kMaxColors);
    if (!colors_) return ERR_NO_MEMORY;
    Vn_GetPaletteEntries(ActivePalette(bitmap), 0, kMaxColors, colors_);
  }
  diffuses_ = !(Vn_GetDisplayMode() & MODE_ORDERED_DITHER);
  return OK;
}

}  // namespace vn
