// What becomes of a row between the bitmap's depth and the band: copied, widened or dithered.
#ifndef VNCORE_DEVICE_ROW_OUTPUT_H
#define VNCORE_DEVICE_ROW_OUTPUT_H

#include "color/diffusion_wave.h"
#include "device/dither_rows.h"
#include "device/expand_rows.h"
#include "device/paint_job.h"
#include "device/paint_scratch.h"

namespace vn {

class RowOutput {
 public:
  // Chooses the loop, once for all paints of a series, and takes what a paint needs for `rows` rows of
  // `pixels` pixels. Returns OK, ERR_INVALID_PARAMETER when there is no loop for the depths, or
  // ERR_NO_MEMORY.
  VnStatus Prepare(const PaintJob& job, int32_t deviceBits, int32_t kind, uint64_t pixels,
                   uint64_t rows, PaintScratch* scratch);

  // Depth of the rows that go out.
  int32_t Bits() const { return bits_; }
  bool Dithers() const { return dither_ != nullptr; }
  // Rows go out as they are; Write is then not to be called.
  bool Direct() const { return !dither_ && !expand_; }

  // Where it is there, rows are to go through it in groups and Write is not to be called.
  DiffusionWave& Wave() { return wave_; }

  // Pixels `first` to `last` - 1 of `row` go to `to`. Rows come in the order of the paint, since
  // errors travel from one to the next.
  void Write(uint8_t* to, const uint8_t* row, int32_t first, int32_t last, uint32_t patternX,
             int32_t patternY) const {
    if (dither_) {
      dither_(to, row, bitmap_, first, last, patternX, patternY, errors_, colors_);
    } else {
      expand_(to, row, bitmap_, first, last);
    }
  }

 private:
  VnStatus Choose(const BitmapHandle& bitmap, int32_t deviceBits, int32_t kind,
                  PaintScratch* scratch);
  VnStatus ChooseDither(const BitmapHandle& bitmap, int32_t deviceBits, PaintScratch* scratch);
  void PrepareWave(const PaintJob& job, uint64_t pixels, uint64_t rows, PaintScratch* scratch);

  const BitmapHandle* bitmap_ = nullptr;  // null before the loop is chosen
  int32_t bits_ = 0;
  DitherRow dither_ = nullptr;
  ExpandRow expand_ = nullptr;
  bool diffuses_ = false;
  DiffusionCell* errors_ = nullptr;
  DiffusionWave wave_;
  RGBQUAD* colors_ = nullptr;
};

}  // namespace vn

#endif
