// The loops of combinations for any machine, and the choice of a loop.
#include "compose/combine_rows.h"

#include <bit>

#include "compose/combine_loops.h"
#include "compose/combine_plan.h"
#include "kernel/vector.h"

namespace vn {
namespace {

struct Reduced {
  CombineShape shape;
  CombineInversions invert;
};

constexpr uint8_t Complement(bool yes) { return yes ? 0xFF : 0; }

// A table with three ones is the complement of one with a single one; that one is an AND of
// operands that may be complemented. Of two ones, a table and its complement share a shape.
Reduced ReduceTable(uint32_t table) {
  const auto ones = std::popcount(table);
  const bool complement = ones > 2 || (ones == 2 && (table & 1));
  if (complement) table = 15 & ~table;
  const uint8_t result = Complement(complement);
  switch (table) {
    case 0:
      return {kShapeFill, {0, 0, result}};
    case 6:
      return {kShapeXor, {0, 0, result}};
    case 10:
      return {kShapeDestination, {0, 0, result}};
    case 12:
      return {kShapeSource, {0, 0, result}};
    default: {
      const uint32_t inputs = static_cast<uint32_t>(std::countr_zero(table));  // 2s + d
      return {kShapeAnd, {Complement(!(inputs & 2)), Complement(!(inputs & 1)), result}};
    }
  }
}

Reduced Reduce(const CombinePlan& plan) {
  if (plan.code < kFirstArithmetic) return ReduceTable(plan.code);
  return {static_cast<CombineShape>(kShapeAdd + plan.code - kFirstArithmetic),
          {Complement(plan.invertSource), Complement(plan.invertDestination),
           Complement(plan.invertResult)}};
}

}  // namespace

void RunCombineLoop(const CombineLoop& loop, const CombineSpan& span) {
  const auto stride = static_cast<ptrdiff_t>(span.bytes);
  const bool oneStretch = (span.firstMask & span.lastMask) == 0xFF && span.shift == 0 &&
                          span.targetStride == stride &&
                          (!span.source || span.sourceStride == stride);
  if (!oneStretch) return loop.rows(span, loop.invert);
  CombineSpan all = span;
  all.bytes *= span.rows;
  all.rows = 1;
  loop.rows(all, loop.invert);
}

CombineRows PlainCombineRows(CombineShape shape, int32_t channelBits, bool shifted, bool inverted) {
  return SelectRows(shape, channelBits, shifted, inverted);
}

CombineLoop SelectCombineLoop(const CombinePlan& plan, int32_t bitsPerPixel, bool shifted) {
  const Reduced reduced = Reduce(plan);
  const int32_t channelBits = bitsPerPixel == 4 ? 4 : bitsPerPixel == 16 ? 5 : 8;
  const auto select = VNCORE_VECTOR_FORM(PlainCombineRows, CombineRowsAvx2);
  const CombineInversions invert = reduced.invert;
  const bool inverted = invert.source || invert.destination || invert.result;
  return {select(reduced.shape, channelBits, shifted, inverted), invert};
}

}  // namespace vn
