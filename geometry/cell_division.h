// Exact division by the size of a cell, as a multiplication: the averages of resampling.
#ifndef VNCORE_GEOMETRY_CELL_DIVISION_H
#define VNCORE_GEOMETRY_CELL_DIVISION_H

#include <cstdint>

namespace vn {

// Sums here are of `size` bytes, so at most 255 * size. For m = ceil(2^k / size) and m * size =
// 2^k + e the product sum * m / 2^k lies above sum / size by sum * e / (size * 2^k). That is less
// than 1 / size, and so the whole parts are equal, as long as sum * e < 2^k.
inline constexpr uint32_t kMostCell = 257;  // the largest size; sums then fit 16 bits

// sum / size = sum * WideReciprocal(size) >> 24, all in 32 bits without a sign.
constexpr uint32_t WideReciprocal(uint32_t size) { return ((1u << 24) + size - 1) / size; }
static_assert(255u * kMostCell * (kMostCell - 1) < 1u << 24, "e is at most size - 1");
static_assert(255ull * ((1u << 24) + kMostCell) < 1ull << 32, "products fit");

// sum / size = (sum * multiplier >> 16) >> shift, for 16-bit lanes and sizes from 2 on. Above the
// limit not every size has a multiplier of 16 bits.
inline constexpr uint32_t kMostNarrowCell = 128;
struct NarrowReciprocal {
  uint16_t multiplier;
  uint16_t shift;

  explicit constexpr NarrowReciprocal(uint32_t size) : multiplier(0), shift(0) {
    for (uint32_t k = 16; k < 32; ++k) {
      const uint64_t power = uint64_t{1} << k;
      const uint64_t m = (power + size - 1) / size;
      if (m > UINT16_MAX) return;
      if (255 * size * (m * size - power) >= power) continue;
      multiplier = static_cast<uint16_t>(m);
      shift = static_cast<uint16_t>(k - 16);
      return;
    }
  }
};
static_assert([] {
  for (uint32_t size = 2; size <= kMostNarrowCell; ++size) {
    if (NarrowReciprocal(size).multiplier == 0) return false;
  }
  return true;
}());

}  // namespace vn

#endif
