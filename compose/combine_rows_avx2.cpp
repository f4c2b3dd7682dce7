// The loops of combinations for AVX2.
#include "compose/combine_loops.h"

namespace vn {

CombineRows CombineRowsAvx2(CombineShape shape, int32_t channelBits, bool shifted, bool inverted) {
  return SelectRows(shape, channelBits, shifted, inverted);
}

}  // namespace vn
