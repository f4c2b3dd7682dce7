// The record behind BitmapHandle.Region: one block from the system layer that holds the rectangles
// in the layout of RGNDATA, and the platform object last built from them.
#ifndef VNCORE_REGION_REGION_RECORD_H
#define VNCORE_REGION_REGION_RECORD_H

#include <vncore/vncore.h>
#include "kernel/rects.h"
#include "kernel/scratch_buffer.h"

// Rectangles are in storage coordinates, lie inside the bitmap and do not overlap; their order is
// the source's. header.rcBound is transformed along with them, never computed from them.
struct Vn_RegionRecord {
  HRGN CachedRegion;          // built from the list, or null
  int32_t CacheHasTransform;  // nonzero: CachedTransform belongs to CachedRegion
  RegionTransform CachedTransform;
  RGNDATAHEADER header;

  RECT* Rects() { return reinterpret_cast<RECT*>(this + 1); }
  const RECT* Rects() const { return reinterpret_cast<const RECT*>(this + 1); }
  RECT* begin() { return Rects(); }
  RECT* end() { return Rects() + header.nCount; }
  const RECT* begin() const { return Rects(); }
  const RECT* end() const { return Rects() + header.nCount; }
  RGNDATA* Data() { return reinterpret_cast<RGNDATA*>(&header); }
};

namespace vn {

// Bytes in front of the RGNDATA.
inline constexpr uint32_t kRegionFieldBytes = offsetof(RegionRecord, header);
static_assert(sizeof(RegionRecord) == kRegionFieldBytes + sizeof(RGNDATAHEADER),
              "the rectangles follow the header as in RGNDATA");
static_assert(sizeof(RGNDATAHEADER) == 32 && sizeof(RECT) == 16);
static_assert(sizeof(void*) != 4 || kRegionFieldBytes == 36);

// What is known of the list without a walk, behind its last rectangle: see band_order.h. Blocks made
// here have room for it; one that comes from elsewhere may end with the list.
struct BandNote {
  uint32_t order;
  uint32_t seal;
};
static_assert(alignof(BandNote) <= alignof(RECT));

// Bytes of the block of a record of `count` rectangles; 0 when it cannot be told in 32 bits.
inline uint32_t RegionRecordBytes(uint32_t count) {
  constexpr uint32_t kRest = sizeof(RegionRecord) + sizeof(BandNote);
  constexpr uint32_t kMost = (0xFFFFFFFFu - kRest) / sizeof(RECT);
  return count > kMost ? 0 : static_cast<uint32_t>(kRest + count * sizeof(RECT));
}

// The place of the note, or null where the block has none.
BandNote* BandNoteOf(RegionRecord* record);

// The list was written: whatever stands behind it tells nothing of it.
void ForgetBandOrder(RegionRecord* record);

// Deletes the cached object and frees the block. Null is allowed.
void FreeRegionRecord(RegionRecord* record);

// Deletes the cached object, which no longer fits the list.
void DropCachedRegion(RegionRecord* record);

// Stores the number of rectangles, and the size that goes with it.
void SetRegionCount(RegionRecord* record, uint32_t count);

// Changes every rectangle and the bounds by `map(RECT*)` and cuts them to `area`; rectangles with
// nothing left go, and bounds that were cut to nothing are all zero. The block stays where it is.
template <class Map>
void MapRegionRecord(RegionRecord* record, const RECT& area, Map map) {
  RECT* kept = record->begin();
  for (RECT rect : *record) {
    map(&rect);
    if (IntersectRects(kept, rect, area)) ++kept;
  }
  RECT bounds = record->header.rcBound;
  map(&bounds);
  if (!RectIsWithin(bounds, area) && !IntersectRects(&bounds, bounds, area)) bounds = {0, 0, 0, 0};
  record->header.rcBound = bounds;
  SetRegionCount(record, static_cast<uint32_t>(kept - record->begin()));
  ForgetBandOrder(record);
}

// Makes empty bounds all zero.
inline void ClearEmptyBounds(RegionRecord* record) {
  if (RectIsEmpty(record->header.rcBound)) record->header.rcBound = {0, 0, 0, 0};
}

// Gives back the memory behind the last rectangle. Returns the block's address, which may have
// changed; a failed reallocation keeps the larger block.
RegionRecord* ShrinkRegionRecord(RegionRecord* record);

}  // namespace vn

#endif
