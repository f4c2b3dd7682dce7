// The flags of a combination, reduced to what there is to do.
#ifndef VNCORE_COMPOSE_COMBINE_PLAN_H
#define VNCORE_COMPOSE_COMBINE_PLAN_H

#include <cstdint>

namespace vn {

// Codes 0 to 15 are truth tables of a destination bit d and a source bit s: bit 2s + d of the code
// is the result. They tell all, inversions included. Codes from kFirstArithmetic on are the
// operations from COMBINE_ADD on, in their order.
enum CombineCode : uint8_t {
  kTableZero = 0,
  kTableNotDestination = 5,
  kTableDestination = 10,  // nothing to do
  kTableOne = 15,
  kFirstArithmetic = 16,
  kCombineCodes = 25
};

struct CombinePlan {
  uint8_t code;
  bool needsSource;
  bool needsDestination;
  // Of the bits of an operand before the arithmetic, and of its result.
  bool invertSource;
  bool invertDestination;
  bool invertResult;
};

// Whether each of the four groups of the flags has a value that exists, and no other bit is set.
bool AreCombineFlags(uint32_t flags);

// `flags` are valid. `oneBit`: the bitmaps have 1 bit per pixel, where everything is boolean.
CombinePlan PlanCombination(uint32_t flags, bool oneBit);

}  // namespace vn

#endif
