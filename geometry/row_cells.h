// Rows that shrink: each new pixel is the average of the old pixels of its cell.
#ifndef VNCORE_GEOMETRY_ROW_CELLS_H
#define VNCORE_GEOMETRY_ROW_CELLS_H

#include "geometry/resample_axis.h"
#include "geometry/row_cells_loops.h"
#include "kernel/scratch_buffer.h"

namespace vn {

// Writes the averages, rounded down, of the cells of a row of pixels of `Channels` bytes, from new
// pixel `first` on.
template <uint32_t Channels>
void AverageCells(const ResampleAxis& axis, const uint8_t* source, uint8_t* target,
                  uint32_t first = 0);

// The rows of a picture, `channels` (1 or 3) bytes a pixel. Vectors follow places that are worked
// out once; without vectors, or without memory for the places, it is AverageCells for each row.
class RowCells {
 public:
  RowCells(const ResampleAxis& axis, uint32_t channels);

  // The rows are apart.
  void Average(const uint8_t* source, uint8_t* target) const;

 private:
  bool MakePlan();
  uint32_t GroupsInReach(uint32_t readBytes) const;

  ResampleAxis axis_;
  uint32_t channels_;
  CellLoop vector_ = nullptr;
  CellPlan plan_;
  ScratchBuffer<uint32_t> starts_;
  ScratchBuffer<uint8_t> larger_;
};

}  // namespace vn

#endif
