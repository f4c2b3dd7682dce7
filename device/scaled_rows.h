// The rows of a scaled paint from the bottom device row up, which is the order of a band.
#ifndef VNCORE_DEVICE_SCALED_ROWS_H
#define VNCORE_DEVICE_SCALED_ROWS_H

#include "device/band.h"
#include "device/scale_mapping.h"

namespace vn {

// Calls `use(row, changed, y)` with the work row of every device row. One that repeats has not
// changed.
template <class Use>
void ForEachScaledRow(const ScaleMapping& mapping, const Use& use) {
  Stepper step = mapping.row;
  uint32_t row = mapping.firstRow;
  bool changed = true;
  for (int32_t y = mapping.y1; y > mapping.y0;) {
    --y;
    use(row, changed, y);
    const uint32_t advance = step.Advance();
    row += advance;
    changed = advance != 0;
  }
}

// Sends the rows that `write(row)` writes to band->Row(), as they are.
template <class Write>
void SendScaledRows(const ScaleMapping& mapping, Band* band, const Write& write) {
  ForEachScaledRow(mapping, [&](uint32_t row, bool changed, int32_t y) {
    if (changed) {
      write(row);
    } else {
      band->RepeatRow();
    }
    band->Commit(y);
  });
  band->Finish();
}

}  // namespace vn

#endif
