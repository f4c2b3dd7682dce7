// The rectangles of a platform region, as a new record.
#ifndef VNCORE_REGION_REGION_SOURCE_H
#define VNCORE_REGION_REGION_SOURCE_H

#include "region/region_record.h"
#include "region/region_transform.h"

namespace vn {

// Write a new record with the rectangles of `region` as they stand, without a cached object.
// Return OK, ERR_INVALID_PARAMETER (no region) or ERR_NO_MEMORY.

// As GetRegionData lists them.
VnStatus ReadRegion(HRGN region, RegionRecord** record);
// Found row by row with region operations, for Win32s, which has no GetRegionData: no rectangle is
// higher than one row. Rows that do not show in a bitmap of `height` rows are left out.
VnStatus ScanRegion(HRGN region, int32_t height, const RegionMapping& mapping,
                    RegionRecord** record);

}  // namespace vn

#endif
