// The loops of combinations for any machine.
#include "compose/combine_loops.h"

namespace vn {

CombineLoop PlainCombineLoop(const CombineShape& shape) { return SelectLoop(shape); }

}  // namespace vn
