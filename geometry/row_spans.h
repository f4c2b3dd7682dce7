// Rows that grow: new pixels lie on straight lines between neighbouring old ones.
#ifndef VNCORE_GEOMETRY_ROW_SPANS_H
#define VNCORE_GEOMETRY_ROW_SPANS_H

#include "geometry/resample_axis.h"
#include "geometry/row_spans_loops.h"
#include "kernel/scratch_buffer.h"

namespace vn {

// Writes the new row of pixels of `Channels` bytes. In a span of n from pixel a to pixel b, new
// pixel k has a + floor((b - a) * k / n) in each channel; the last span leads to its own pixel.
template <uint32_t Channels>
void InterpolateSpans(const ResampleAxis& axis, const uint8_t* source, uint8_t* target);

// The rows of a picture, `channels` (1 or 3) bytes a pixel. Vectors follow places that are worked
// out once; without vectors, or without memory for the places, it is InterpolateSpans for each row.
class RowSpans {
 public:
  RowSpans(const ResampleAxis& axis, uint32_t channels);

  // The rows are apart.
  void Interpolate(const uint8_t* source, uint8_t* target) const;

 private:
  bool MakePlan();
  void PlanQuarter(uint32_t target, SpanPiece* piece, uint32_t quarter) const;

  ResampleAxis axis_;
  uint32_t channels_;
  uint32_t weight_ = 0;  // what the two weights of a byte sum to
  SpanLoop vector_ = nullptr;
  SpanPlan plan_{};
  ScratchBuffer<SpanPiece> pieces_;
};

}  // namespace vn

#endif
