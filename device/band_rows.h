// Rows that are worked on, on their way into a band: one by one, or in groups where their errors are
// diffused so.
#ifndef VNCORE_DEVICE_BAND_ROWS_H
#define VNCORE_DEVICE_BAND_ROWS_H

#include "device/band.h"
#include "device/row_output.h"

namespace vn {

class BandRows {
 public:
  // Pixels `first` to `last` - 1 of every row; `patternX` is the matrix column of the first.
  BandRows(RowOutput* output, int32_t first, int32_t last, uint32_t patternX, Band* band)
      : output_(output), first_(first), last_(last), patternX_(patternX), band_(band) {}

  // The next row, of matrix row `patternY`. It belongs to device row `y`, one above the row before it.
  void Add(const uint8_t* row, int32_t patternY, int32_t y) {
    y_ = y;
    if (DiffusionWave& wave = output_->Wave()) {
      wave.Put(waiting_++, row, static_cast<uint32_t>(first_));
      if (waiting_ == DiffusionWave::kLines) WriteGroup();
    } else {
      output_->Write(band_->Row(), row, first_, last_, patternX_, patternY);
      band_->Commit(y);
    }
  }

  // Sends what remains.
  void Finish() {
    if (waiting_) WriteGroup();
    band_->Finish();
  }

 private:
  // Bands and groups end apart from each other.
  void WriteGroup() {
    output_->Wave().Run();
    for (uint32_t line = 0; line < waiting_; ++line) {
      output_->Wave().Take(line, band_->Row());
      band_->Commit(y_ + static_cast<int32_t>(waiting_ - 1 - line));
    }
    waiting_ = 0;
  }

  RowOutput* output_;
  int32_t first_, last_;
  uint32_t patternX_;
  Band* band_;
  uint32_t waiting_ = 0;  // rows of a group
  int32_t y_ = 0;
};

}  // namespace vn

#endif
