// A region record in the making from runs of pixels, row by row.
#ifndef VNCORE_REGION_BAND_BUILDER_H
#define VNCORE_REGION_BAND_BUILDER_H

#include "region/region_builder.h"

namespace vn {

// Rows come downwards, the runs of a row by rising column with gaps between them. Rows that repeat
// the one above join its band, as in the platform's own lists; on Win32s, where lists come from a
// scan, every row stays alone. Test it: it is empty when memory failed.
class BandBuilder {
 public:
  explicit operator bool() const { return static_cast<bool>(built_); }

  // A run of row `y`, `right` exclusive. False when memory failed.
  bool AddRun(int32_t left, int32_t right, int32_t y) {
    return built_.Append({left, y, right, y + 1});
  }
  // The row's runs are complete.
  void CloseRow();
  // Gives the record away, with the bounds of all runs.
  RegionRecord* Finish() { return built_.Finish(bounds_); }

 private:
  bool RepeatsBand();
  void ExtendBounds();

  RegionBuilder built_;
  uint32_t band_ = 0;  // where the last band begins
  uint32_t row_ = 0;   // where the open row begins
  RECT bounds_{0, 0, 0, 0};
};

}  // namespace vn

#endif
