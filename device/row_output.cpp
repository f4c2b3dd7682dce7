#include "device/row_output.h"

#include "color/palettes.h"

namespace vn {

VnStatus RowOutput::Prepare(const PaintJob& job, int32_t deviceBits, int32_t kind,
                            uint64_t pixels) {
  bitmap_ = job.bitmap;
  bits_ = bitmap_->BitsPerPixel;
  if (kind == PAINT_DITHER) return PrepareDither(deviceBits, pixels);
  if (kind == PAINT_EXPAND) {
    bits_ = 24;
    expand_ = SelectExpandRow(bitmap_->BitsPerPixel);
    if (!expand_) return ERR_INVALID_PARAMETER;
  }
  return OK;
}

VnStatus RowOutput::PrepareDither(int32_t deviceBits, uint64_t pixels) {
  bits_ = deviceBits;
  dither_ = SelectDitherRow(bitmap_->BitsPerPixel, deviceBits);
  if (!dither_) return ERR_INVALID_PARAMETER;
  if (bitmap_->BitsPerPixel <= 8) {
    colors_ = ZeroedScratch<RGBQUAD>(kMaxColors);
    if (!colors_) return ERR_NO_MEMORY;
    Vn_GetPaletteEntries(ActivePalette(*bitmap_), 0, kMaxColors, colors_.data());
  }
  if (!(Vn_GetDisplayMode() & MODE_ORDERED_DITHER)) {
    errors_ = ZeroedScratch<DiffusionCell>(pixels);
    if (!errors_) return ERR_NO_MEMORY;
  }
  return OK;
}

}  // namespace vn
