// Rows of a combination, over packed pixels and in place.
#ifndef VNCORE_COMPOSE_COMBINE_ROWS_H
#define VNCORE_COMPOSE_COMBINE_ROWS_H

#include "compose/combine_choice.h"

namespace vn {

// Rows of pixels to combine, in bytes of the target. Where pixels are shifted, the source bits of the
// first and the last byte are read only as far as the source's pixels reach. Source and target are
// apart, or the same rows, or rows of one bitmap in an order in which none is written before it is
// read: with rising addresses the source lies behind the target.
struct CombineSpan {
  uint8_t* target;
  const uint8_t* source;  // null without one
  ptrdiff_t targetStride;
  ptrdiff_t sourceStride;
  size_t bytes;  // of a row, at least 1
  size_t rows;
  bool readsBefore;   // shifted: source[0] holds pixels
  bool readsBehind;   // shifted: source[bytes] holds pixels
  uint8_t firstMask;  // bits of the first and last byte that are written
  uint8_t lastMask;   // (both in firstMask where they are one byte)
};

// Combines a span, rows that lie close together in one stretch.
void CombineRows(const CombineChoice& choice, const CombineSpan& span);

}  // namespace vn

#endif
