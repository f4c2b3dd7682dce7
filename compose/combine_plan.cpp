#include "compose/combine_plan.h"

#include <vncore/vncore.h>

namespace vn {
namespace {

// Both operands over the four combinations of a source and a destination bit: d = 1010, s = 1100.
constexpr uint32_t kAll = 15;
constexpr uint32_t kSourceOperands[] = {12, 3, 0, kAll};
constexpr uint32_t kDestinationOperands[] = {10, 5, 0, kAll};

uint32_t Group(uint32_t flags, int group) { return flags >> 4 * group & 15; }
bool IsDivision(uint32_t operation) {
  return operation == COMBINE_DIV_SRC || operation == COMBINE_DIV_DST;
}

// What an operation does to single bits; for arithmetic, what it amounts to with constants.
uint32_t TableOf(uint32_t operation, uint32_t d, uint32_t s) {
  switch (operation) {
    case COMBINE_AND:
    case COMBINE_MUL:
    case COMBINE_MIN:
      return d & s;
    case COMBINE_XOR:
      return d ^ s;
    case COMBINE_SUB_SRC:
      return d & ~s;
    case COMBINE_SUB_DST:
      return s & ~d;
    case COMBINE_DIV_SRC:
      return d;
    case COMBINE_DIV_DST:
      return s;
    default:
      return d | s;
  }
}

// The table after the group of the result: as it is, complemented, zeros, ones.
uint32_t ResultOf(uint32_t group, uint32_t table) {
  switch (group) {
    case 0:
      return table;
    case 1:
      return kAll & ~table;
    case 2:
      return kTableZero;
    default:
      return kTableOne;
  }
}

}  // namespace

bool AreCombineFlags(uint32_t flags) {
  return flags <= 0xFFFF && Group(flags, 0) <= 3 && Group(flags, 1) <= 3 && Group(flags, 2) <= 11 &&
         Group(flags, 3) <= 3;
}

CombinePlan PlanCombination(uint32_t flags, bool oneBit) {
  const uint32_t operation = flags & 0x0F00;
  const uint32_t table = ResultOf(Group(flags, 3), TableOf(operation,  //
                                                           kDestinationOperands[Group(flags, 1)],
                                                           kSourceOperands[Group(flags, 0)]));
  const bool isConstant = table == kTableZero || table == kTableOne;
  const bool dependsOnSource = (table >> 2 & 3) != (table & 3);
  const bool dependsOnDestination = (table >> 1 & 5) != (table & 5);
  // A division of pixels by a constant is no boolean matter, a division of a constant is.
  const bool divides = IsDivision(operation) && !oneBit && !isConstant;
  const bool dependsOnBoth = dependsOnSource && dependsOnDestination;
  const bool boolean = operation <= COMBINE_XOR || oneBit || (!dependsOnBoth && !divides);
  if (boolean) {
    return {
        static_cast<uint8_t>(table), dependsOnSource, dependsOnDestination, false, false, false};
  }
  const auto code = kFirstArithmetic + ((operation - COMBINE_ADD) >> 8);
  return {static_cast<uint8_t>(code), true, true, Group(flags, 0) == 1, Group(flags, 1) == 1,
          Group(flags, 3) == 1};
}

}  // namespace vn
