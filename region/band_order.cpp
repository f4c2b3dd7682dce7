#include "region/band_order.h"

#include <algorithm>

namespace vn {

BandLook LookAtBands(const RegionRecord& record) {
  bool down = true, up = true;
  uint32_t runs = 0, most = 0;
  const RECT* before = nullptr;
  for (const RECT& rect : record) {
    if (before && rect.top == before->top && rect.bottom == before->bottom) {
      ++runs;
    } else {
      if (before) {
        down = down && rect.top >= before->bottom;
        up = up && rect.bottom <= before->top;
      }
      if (rect.bottom <= rect.top) down = up = false;
      most = std::max(most, runs);
      runs = 1;
    }
    before = &rect;
  }
  if (!down && !up) return {BandOrder::kNone, record.header.nCount};
  return {down ? BandOrder::kDown : BandOrder::kUp, std::max(most, runs)};
}

namespace {

// Ties a note to its list by what can be told without a walk. A block that was copied, and a list
// that became longer, shorter or other at its ends, has no note.
uint32_t SealOf(const RegionRecord& record, uint32_t order) {
  uint32_t seal = 0x811C9DC5u;  // FNV-1a, by words
  const auto mix = [&](uint32_t word) { seal = (seal ^ word) * 0x01000193u; };
  const auto mixRect = [&](const RECT& rect) {
    mix(static_cast<uint32_t>(rect.left));
    mix(static_cast<uint32_t>(rect.top));
    mix(static_cast<uint32_t>(rect.right));
    mix(static_cast<uint32_t>(rect.bottom));
  };
  mix(order);
  mix(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(&record)));
  mix(record.header.nCount);
  mixRect(record.header.rcBound);
  mixRect(*record.begin());
  mixRect(record.end()[-1]);
  return seal;
}

}  // namespace

BandOrder BandOrderOf(RegionRecord* record) {
  constexpr uint32_t kShort = 16;  // sooner walked through than looked up
  if (record->header.nCount < kShort) return BandOrder::kNone;
  BandNote* const note = BandNoteOf(record);
  if (note && note->order <= static_cast<uint32_t>(BandOrder::kUp) &&
      note->seal == SealOf(*record, note->order)) {
    return static_cast<BandOrder>(note->order);
  }
  const BandOrder order = LookAtBands(*record).order;
  if (note) {
    note->order = static_cast<uint32_t>(order);
    note->seal = SealOf(*record, note->order);
  }
  return order;
}

RectBand BandAt(const RegionRecord& record, BandOrder order, int32_t row) {
  if (order == BandOrder::kNone) return {record.begin(), record.end()};
  const bool down = order == BandOrder::kDown;
  const RECT* const end = record.end();
  const RECT* const begin = std::partition_point(record.begin(), end, [=](const RECT& rect) {
    return down ? rect.bottom <= row : rect.top > row;
  });
  const RECT* last = begin;
  while (last != end && last->top <= row && row < last->bottom)
    ++last;
  return {begin, last};
}

int32_t WriteRuns(BandOrder order, RectBand band, int32_t row, int32_t* segments) {
  int32_t* out = segments;
  if (order == BandOrder::kNone) {
    for (const RECT* rect = band.begin; rect != band.end; ++rect) {
      if (row < rect->top || row >= rect->bottom) continue;
      *out++ = rect->left;
      *out++ = rect->right;
    }
  } else {
    for (const RECT* rect = band.begin; rect != band.end; ++rect, out += 2) {
      out[0] = rect->left;
      out[1] = rect->right;
    }
  }
  return static_cast<int32_t>(out - segments);
}

}  // namespace vn
