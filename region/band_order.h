// Lists whose rectangles stand in bands, and the rectangles of a row in them.
#ifndef VNCORE_REGION_BAND_ORDER_H
#define VNCORE_REGION_BAND_ORDER_H

#include "region/region_record.h"

namespace vn {

// How the bands of a list follow one another. The rectangles of a band have the same top and bottom
// and stand together; bands do not overlap. Platform lists run down, and the flips, scalings and
// cuts of this library keep them banded.
enum class BandOrder : uint32_t { kNone, kDown, kUp };

struct BandLook {
  BandOrder order;
  uint32_t mostRuns;  // the most rectangles that one row can meet
};

// Walks through the list.
BandLook LookAtBands(const RegionRecord& record);

// The order of the record's list, or kNone for a short one. It is noted behind the rectangles at the
// first question, so that the next one takes no walk; a block without room there is walked every
// time. The order of a list that somebody changed in its middle behind the library's back may be
// told as it was: whoever bisects by it finds other runs then, but reads nothing outside the list.
BandOrder BandOrderOf(RegionRecord* record);

struct RectBand {
  const RECT* begin;
  const RECT* end;
};

// Rectangles among which all that hold `row` are: those alone, or the whole list for kNone.
RectBand BandAt(const RegionRecord& record, BandOrder order, int32_t row);

// Writes left and right of each in `band` = BandAt(..., order, row) that holds `row`, and returns the
// number of entries.
int32_t WriteRuns(BandOrder order, RectBand band, int32_t row, int32_t* segments);

}  // namespace vn

#endif
