// The loops of combinations for AVX2.
#include "compose/combine_loops.h"

namespace vn {

CombineLoop CombineLoopAvx2(const CombineShape& shape) { return SelectLoop(shape); }

}  // namespace vn
