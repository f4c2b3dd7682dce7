// The vector loop under row_spans.h.
#ifndef VNCORE_GEOMETRY_ROW_SPANS_LOOPS_H
#define VNCORE_GEOMETRY_ROW_SPANS_LOOPS_H

#include <cstddef>
#include <cstdint>

namespace vn {

// A new row is made in pieces of 32 bytes, the last of which may overlap the one before it. Each
// quarter of a piece comes from 16 bytes of the old row: a shuffle brings every byte and the one
// that its line leads to side by side, and their weighted sum is divided by what weights sum to.
constexpr uint32_t kSpanPiece = 32;

// Quarters stand in the order in which two registers hold them, so that packing puts them right:
// the first register has quarters 0 and 2, the second 1 and 3.
struct SpanPiece {
  uint32_t starts[4];
  uint8_t shuffles[4][16];
  int8_t weights[4][16];
};

struct SpanPlan {
  uint32_t pieces;
  uint32_t lastStart;  // first byte of the last piece
  uint16_t multiplier, shift;
};

using SpanLoop = void (*)(const SpanPlan& plan, const SpanPiece* pieces, const uint8_t* source,
                          uint8_t* target);

void InterpolateSpansAvx2(const SpanPlan& plan, const SpanPiece* pieces, const uint8_t* source,
                          uint8_t* target);

}  // namespace vn

#endif
