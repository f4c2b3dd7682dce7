// The row loops of a combination, over packed pixels and in place. No inline functions here: the
// vector form includes this.
#ifndef VNCORE_COMPOSE_COMBINE_ROWS_H
#define VNCORE_COMPOSE_COMBINE_ROWS_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Rows of pixels to combine, in bytes of the target. Where the pixels of source and target lie
// unlike in their bytes, a target byte takes its source bits from two neighbours: byte i from the
// low 8 - shift bits of source[i] and the top `shift` bits of source[i + 1]. Those of the first
// and the last byte are read only as far as the source's pixels reach.
struct CombineSpan {
  uint8_t* target;
  const uint8_t* source;  // null without one
  ptrdiff_t targetStride;
  ptrdiff_t sourceStride;
  size_t bytes;  // of a row, at least 1
  size_t rows;
  uint32_t shift;     // 1 to 7, or 0
  bool readsBefore;   // shifted: source[0] holds pixels
  bool readsBehind;   // shifted: source[bytes] holds pixels
  uint8_t firstMask;  // bits of the first and last byte that are written
  uint8_t lastMask;   // (both in firstMask where they are one byte)
};

// Bytes complemented before and after the operation, each 0 or 0xFF.
struct CombineInversions {
  uint8_t source, destination, result;
};

using CombineRows = void (*)(const CombineSpan& span, CombineInversions invert);

struct CombineLoop {
  CombineRows rows;
  CombineInversions invert;
};

// Runs the loop over a span, in one stretch where nothing lies between its rows.
void RunCombineLoop(const CombineLoop& loop, const CombineSpan& span);

struct CombinePlan;

// The loop for a plan that has something to do, at a depth. `shifted`: spans will come with a
// shift. Source and target rows are apart, or at the same address.
CombineLoop SelectCombineLoop(const CombinePlan& plan, int32_t bitsPerPixel, bool shifted);

// Shapes of loops. The truth tables come down to these five by complementing operands and result;
// what follows are the arithmetic operations in the order of their codes.
enum CombineShape : uint8_t {
  kShapeFill,         // 0
  kShapeDestination,  // d
  kShapeSource,       // s
  kShapeAnd,
  kShapeXor,
  kShapeAdd,
  kShapeSubSource,
  kShapeSubDestination,
  kShapeMul,
  kShapeDivSource,
  kShapeDivDestination,
  kShapeAverage,
  kShapeMin,
  kShapeMax
};

// The two forms of the choice: `channelBits` is 4, 5 or 8, and 8 for the boolean shapes. `inverted`: not all
// inversions are 0; boolean shapes have loops of their own without them.
CombineRows PlainCombineRows(CombineShape shape, int32_t channelBits, bool shifted, bool inverted);
CombineRows CombineRowsAvx2(CombineShape shape, int32_t channelBits, bool shifted, bool inverted);

}  // namespace vn

#endif
