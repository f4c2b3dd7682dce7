// Bits of a row spread to bytes.
#ifndef VNCORE_DEVICE_SPREAD_BITS_H
#define VNCORE_DEVICE_SPREAD_BITS_H

#include <cstdint>

namespace vn {

// Spreads `pixels` bits of `bits` to bytes, 0xFF where the bit is set and else 0, or turned over for
// `invert`, from the one behind the first `skip` (below 8) on.
void SpreadBits(const uint8_t* bits, uint32_t skip, uint32_t pixels, bool invert, uint8_t* to);

}  // namespace vn

#endif
