// Ternary raster operations, evaluated as a tree of selections over the truth table.
#include "platform/headless/surfaces/raster_op.h"

namespace headless {
namespace {

// Bits of `one` where the selector is set, of `zero` where it is clear.
inline uint32_t Select(uint32_t selector, uint32_t zero, uint32_t one) {
  return zero ^ ((zero ^ one) & selector);
}

}  // namespace

void RasterOp::Combine(int32_t count, const uint32_t* pattern, const uint32_t* source,
                       uint32_t* target) const {
  uint32_t m[8];
  for (uint32_t i = 0; i < 8; ++i)
    m[i] = truth_ >> i & 1 ? ~0u : 0u;
  for (int32_t i = 0; i < count; ++i) {
    const uint32_t p = pattern[i], s = source[i], d = target[i];
    const uint32_t low = Select(s, Select(d, m[0], m[1]), Select(d, m[2], m[3]));
    const uint32_t high = Select(s, Select(d, m[4], m[5]), Select(d, m[6], m[7]));
    target[i] = Select(p, low, high);
  }
}

}  // namespace headless
