// Rows averaged and interpolated byte by byte: the vertical half of resampling.
#ifndef VNCORE_GEOMETRY_BLEND_ROWS_H
#define VNCORE_GEOMETRY_BLEND_ROWS_H

#include <cstddef>
#include <cstdint>

#include "geometry/blend_rows_loops.h"
#include "kernel/scratch_buffer.h"

namespace vn {

// Interpolates between two rows of `bytes` bytes.
class RowBlend {
 public:
  explicit RowBlend(size_t bytes);

  // target = a + floor((b - a) * step / span), which is ((span - step) * a + step * b) / span.
  // `step` is below `span`.
  void operator()(const uint8_t* a, const uint8_t* b, uint32_t step, uint32_t span,
                  uint8_t* target) const;

 private:
  size_t bytes_;
  BlendLoop vector_;  // or null
};

// The average of some rows of `bytes` bytes, rounded down. Sums have 16 bits where the largest
// average allows it, else 32, which wrap.
class RowAverage {
 public:
  // Averages are of up to `mostRows` rows. Test it: empty when memory failed.
  RowAverage(size_t bytes, uint32_t mostRows);
  explicit operator bool() const { return narrow_ || wide_; }

  // Adds a row to an average, which its first row begins.
  void Add(const uint8_t* row, bool first);
  // Writes the average of the `rows` rows that were added.
  void Write(uint32_t rows, uint8_t* target) const;

 private:
  size_t bytes_;
  ScratchBuffer<uint16_t> narrow_;
  ScratchBuffer<uint32_t> wide_;
  SumLoop vectorAdd_;          // or null
  AverageLoop vectorAverage_;  // or null
};

}  // namespace vn

#endif
