// Finding the rectangles of a row without a walk through all of them.
#ifndef VNCORE_REGION_REGION_ROWS_H
#define VNCORE_REGION_REGION_ROWS_H

#include "region/band_order.h"

namespace vn {

// A cursor over the record of a bitmap, for a row loop or for many point questions. A look over the
// list at the start tells whether it is banded; then a row's rectangles are found by bisection. Any
// other list is walked as it is. The record must not change meanwhile.
class RegionRows {
 public:
  explicit RegionRows(const RegionRecord* record);

  // Writes the column runs of a row, left and right of each, in list order. Returns the number of
  // entries.
  int32_t Segments(int32_t row, int32_t* segments);
  bool Contains(int32_t row, int32_t column);
  // The most entries that a row can have.
  uint32_t MostSegments() const { return look_.mostRuns * 2; }

 private:
  void GoTo(int32_t row);

  const RegionRecord* record_;
  BandLook look_;
  RectBand band_;  // rectangles among which all those of the row are: where the last search ended
};

// The entries that a list for any row of the bitmap can need: at least twice what
// Vn_GetBitmapClipSegmentsMax reports, which counts one entry where a run takes two.
uint32_t ClipSegmentsCapacity(const BitmapHandle* bitmap);

}  // namespace vn

#endif
