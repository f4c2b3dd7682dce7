// Access to the fixed palettes, and the bit-count table.
#include "color/fixed_palettes.h"

#include <algorithm>
#include <bit>

namespace vn {
namespace {

constexpr std::array<uint8_t, 256> MakeBitCounts() {
  std::array<uint8_t, 256> counts{};
  for (unsigned i = 0; i < 256; ++i)
    counts[i] = static_cast<uint8_t>(std::popcount(i));
  return counts;
}

constexpr std::array<uint8_t, 256> kBitCounts = MakeBitCounts();

static_assert(FixedPalette256[0x6D].rgbRed == 109 && FixedPalette256[0x6D].rgbGreen == 109 &&
              FixedPalette256[0x6D].rgbBlue == 85);

}  // namespace
}  // namespace vn

const RGBQUAD* VN_CALL Vn_IntGetFixedPalette(uint32_t bits) {
  switch (bits) {
    case 1:
      return vn::FixedPalette2.data();
    case 4:
      return vn::FixedPalette16.data();
    case 8:
      return vn::FixedPalette256.data();
    default:
      return nullptr;
  }
}

VnStatus VN_CALL Vn_GetFixedPalette(RGBQUAD* colors, uint32_t bits) {
  const RGBQUAD* table = bits == 0 ? vn::GrayRamp256.data() : Vn_IntGetFixedPalette(bits);
  if (!table) return ERR_INVALID_PARAMETER;
  std::copy_n(table, size_t{1} << (bits == 0 ? 8 : bits), colors);
  return OK;
}

const uint8_t* VN_CALL Vn_Get1BitOnTable(void) { return vn::kBitCounts.data(); }
