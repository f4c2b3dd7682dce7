// Truth tables and operations reduced to the few that have loops.
#include "compose/combine_choice.h"

#include <bit>

#include <vncore/vncore.h>
#include "kernel/vector.h"

namespace vn {
namespace {

struct Reduced {
  CombineCore core;
  uint16_t invertSource = 0, invertDestination = 0, invertResult = 0;
  bool swapped = false;
};

constexpr uint16_t Complement(bool yes) { return yes ? 0xFFFF : 0; }

// A table with three ones is the complement of one with a single one; that one is an AND of
// operands that may be complemented. Of two ones, a table and its complement share a core.
Reduced ReduceTable(uint32_t table) {
  const auto ones = std::popcount(table);
  const bool complement = ones > 2 || (ones == 2 && (table & 1));
  if (complement) table = 15 & ~table;
  const uint16_t result = Complement(complement);
  switch (table) {
    case 0:
      return {CombineCore::kZero, 0, 0, result};
    case 6:
      return {CombineCore::kXor, 0, 0, result};
    case 10:
      return {CombineCore::kDestination, 0, 0, result};
    case 12:
      return {CombineCore::kSource, 0, 0, result};
    default: {
      const auto inputs = static_cast<uint32_t>(std::countr_zero(table));  // 2s + d
      return {CombineCore::kAnd, Complement(!(inputs & 2)), Complement(!(inputs & 1)), result};
    }
  }
}

// d - s is the complement of (the complement of d) + s, both held within the channel, and a maximum
// that of the minimum of complements. `channels`: the bits of a word that belong to channels, which
// are all that such a complement may turn over in the result.
Reduced ReduceOperation(uint32_t operation, uint16_t channels) {
  switch (operation) {
    case COMBINE_ADD:
      return {CombineCore::kAdd};
    case COMBINE_SUB_SRC:
      return {CombineCore::kAdd, 0, channels, channels};
    case COMBINE_SUB_DST:
      return {CombineCore::kAdd, channels, 0, channels};
    case COMBINE_MUL:
      return {CombineCore::kMul};
    case COMBINE_DIV_SRC:
      return {CombineCore::kDivide};
    case COMBINE_DIV_DST:
      return {CombineCore::kDivide, 0, 0, 0, true};
    case COMBINE_AVERAGE:
      return {CombineCore::kAverage};
    case COMBINE_MIN:
      return {CombineCore::kMin};
    default:
      return {CombineCore::kMin, channels, channels, channels};
  }
}

Reduced Reduce(const CombinePlan& plan, int32_t bitsPerPixel) {
  if (plan.code < kFirstArithmetic) return ReduceTable(plan.code);
  const uint32_t operation = COMBINE_ADD + ((uint32_t{plan.code} - kFirstArithmetic) << 8);
  Reduced reduced = ReduceOperation(operation, bitsPerPixel == 16 ? 0x7FFF : 0xFFFF);
  reduced.invertSource ^= Complement(plan.invertSource);
  reduced.invertDestination ^= Complement(plan.invertDestination);
  reduced.invertResult ^= Complement(plan.invertResult);
  return reduced;
}

}  // namespace

CombineChoice ChooseCombineLoop(const CombinePlan& plan, int32_t bitsPerPixel, uint32_t shift) {
  const Reduced r = Reduce(plan, bitsPerPixel);
  const bool boolean = r.core <= CombineCore::kXor;
  const int32_t channelBits = boolean ? 8 : bitsPerPixel == 16 ? 5 : bitsPerPixel == 4 ? 4 : 8;
  const CombineShape shape = {r.core, channelBits, shift != 0,
                              (r.invertSource | r.invertDestination | r.invertResult) != 0};
  const auto select = VNCORE_VECTOR_FORM(PlainCombineLoop, CombineLoopAvx2);
  return {select(shape), {r.invertSource, r.invertDestination, r.invertResult, r.swapped, shift}};
}

}  // namespace vn
