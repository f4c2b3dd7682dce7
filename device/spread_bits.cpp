#include "device/spread_bits.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vn {
namespace {

// Entry v: byte k is 0xFF when bit 7 - k of v is set, else 0.
using BitExpandEntry = std::array<uint8_t, 8>;
constexpr std::array<BitExpandEntry, 256> MakeBitExpandTable() {
  std::array<BitExpandEntry, 256> table{};
  for (size_t v = 0; v < 256; ++v) {
    for (size_t k = 0; k < 8; ++k)
      table[v][k] = (v >> (7 - k) & 1) ? 0xFF : 0;
  }
  return table;
}
constexpr std::array<BitExpandEntry, 256> BitExpandTable = MakeBitExpandTable();

}  // namespace

void SpreadBits(const uint8_t* bits, uint32_t skip, uint32_t pixels, bool invert, uint8_t* to) {
  const uint8_t flip = invert ? 0xFF : 0;
  const auto entry = [&] { return BitExpandTable[*bits++ ^ flip].data(); };
  if (skip) {
    const uint32_t head = std::min(8 - skip, pixels);
    std::memcpy(to, entry() + skip, head);
    to += head;
    pixels -= head;
  }
  for (; pixels >= 8; pixels -= 8, to += 8)
    std::memcpy(to, entry(), 8);
  if (pixels) std::memcpy(to, entry(), pixels);
}

}  // namespace vn
