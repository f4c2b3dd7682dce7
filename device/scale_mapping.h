// Where the pixels of a scaled paint come from: the stepping of the three scaled renderers, and the
// shift of the two that paint at 1:1.
#ifndef VNCORE_DEVICE_SCALE_MAPPING_H
#define VNCORE_DEVICE_SCALE_MAPPING_H

#include "device/paint_job.h"
#include "kernel/stepper.h"

namespace vn {

// Device columns x0 to x1 - 1 step through source columns from firstColumn on; device rows y1 - 1
// down to y0 step through work rows from firstRow on. Both run without leaving the bitmap.
struct ScaleMapping {
  int32_t x0, x1, y0, y1;
  uint32_t firstColumn;
  Stepper column;  // divisor: the destination's width
  uint32_t firstRow;
  Stepper row;  // divisor: the destination's height
  bool expandX, expandY;
  int32_t sourceWidth;  // of the source rectangle

  uint32_t Pixels() const { return static_cast<uint32_t>(x1 - x0); }
  uint32_t Rows() const { return static_cast<uint32_t>(y1 - y0); }
  // Source column of pixel `d`; `d` may be Pixels(), the column behind the last one's block.
  uint64_t ColumnOf(uint64_t d) const;

  // Makes each step at equal sizes a carry, which is what steppers without a quotient need.
  void CarryAtEqualSizes();
};

// False when there is nothing to paint.
bool MapScaled(const PaintJob& job, ScaleMapping* mapping);

// Storage row of work row `row` of a scaled paint. Work rows run up the picture.
inline int64_t ScaledStorageRow(const PaintJob& job, int64_t row) {
  return job.BottomFirst() ? row : job.bitmap->Height - row - 1;
}

// Two rectangles of one size: `source`, whose rows are picture lines from the top of the bitmap
// down, goes to `device`.
struct ShiftMapping {
  RECT source;
  RECT device;

  int32_t Columns() const { return device.right - device.left; }
  uint32_t Rows() const { return static_cast<uint32_t>(device.bottom - device.top); }
};

// False when there is nothing to paint.
bool MapUnscaled(const PaintJob& job, ShiftMapping* mapping);

// Storage row of picture line `line` of an unscaled paint.
inline int64_t UnscaledStorageRow(const PaintJob& job, int64_t line) {
  return job.BottomFirst() ? job.bitmap->Height - line - 1 : line;
}

}  // namespace vn

#endif
