// Rows between their stored format and the one in which they are resampled.
#ifndef VNCORE_GEOMETRY_RESAMPLE_ROWS_H
#define VNCORE_GEOMETRY_RESAMPLE_ROWS_H

#include <vncore/vncore.h>
#include "kernel/row_view.h"
#include "kernel/scratch_buffer.h"

namespace vn {

// Filtering is defined on rows of 24 bits, blue first. Where all colours of a picture are grays the
// three channels stay equal through every filter, and one stands for them: the gray of (g, g, g) is
// g, so the way there and back is exact.
struct ResampleColors {
  explicit ResampleColors(BitmapHandle* bitmap);

  uint32_t depth;     // of stored rows, as Vn_ConvertBuffer counts: a full gray ramp is BPP_GRAY
  uint32_t channels;  // of a pixel while it is resampled: 1 or 3
  bool dithers;       // indexes of any other palette are dithered back
  RGBQUAD table[256] = {};
};

// The rows of a locked bitmap as they are resampled.
class ResampleSource {
 public:
  // Test it: empty when memory failed.
  ResampleSource(BitmapHandle* bitmap, const ResampleColors& colors);
  explicit operator bool() const { return static_cast<bool>(buffer_); }

  // Whether a row that was read stays when the next one is.
  bool RowsStay() const { return plain_ && view_.InPlace(); }
  const uint8_t* Read(uint32_t row);

 private:
  BitmapHandle* bitmap_;
  const ResampleColors& colors_;
  bool plain_;  // stored rows are what is resampled
  ScratchBuffer<uint8_t> buffer_;
  RowView view_;
};

// Takes resampled rows for a locked bitmap, from row 0 on.
class ResampleTarget {
 public:
  ResampleTarget(BitmapHandle* bitmap, const ResampleColors& colors);
  ResampleTarget(const ResampleTarget&) = delete;
  ResampleTarget& operator=(const ResampleTarget&) = delete;
  ~ResampleTarget();

  // Before the first row. Returns OK or the failure's code.
  VnStatus Prepare();

  // Where to make a row, which Write then stores.
  uint8_t* Make(uint32_t row);
  void Write(uint32_t row);
  // Stores row `row` - 1 once more, as row `row`.
  void Repeat(uint32_t row);

 private:
  BitmapHandle* bitmap_;
  const ResampleColors& colors_;
  bool inPlace_;  // rows are made where they are stored
  bool dithering_ = false;
  BitmapHandle dither_{};  // carries the run
  ScratchBuffer<uint8_t> made_, stored_;
  RowView view_;
};

}  // namespace vn

#endif
