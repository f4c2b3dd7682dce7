// The loop for a combination.
#ifndef VNCORE_COMPOSE_COMBINE_CHOICE_H
#define VNCORE_COMPOSE_COMBINE_CHOICE_H

#include "compose/combine_plan.h"
#include "compose/combine_ways.h"

namespace vn {

struct CombineChoice {
  CombineLoop loop;
  CombineOperands operands;
};

// For a plan that has something to do, at a depth. `shift`: of source pixels against target pixels
// in their bytes, 0 to 7 bits.
CombineChoice ChooseCombineLoop(const CombinePlan& plan, int32_t bitsPerPixel, uint32_t shift);

}  // namespace vn

#endif
