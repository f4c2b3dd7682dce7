// Byte shuffles between 24 and 32 bits. A shuffled loop does whole groups of pixels and leaves the
// ragged end of the row to the plain one.
#include "color/swizzle_24_32.h"

#include <utility>

#include "color/swizzle_24_32_avx2.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

uint32_t LoadDword(const uint8_t* at) {
  uint32_t word;
  std::memcpy(&word, at, sizeof word);
  return word;
}
void StoreDword(uint8_t* at, uint32_t word) { std::memcpy(at, &word, sizeof word); }

constexpr uint32_t SwapOuter(uint32_t w) {
  return (w & 0xFF00FF00) | (w & 0xFF) << 16 | (w >> 16 & 0xFF);
}

void WidenPixels(uint8_t* row, size_t first, size_t end, bool swap) {
  for (size_t x = end; x-- > first;) {
    const uint8_t* p = row + 3 * x;
    const uint32_t w = LoadWord(p) | uint32_t{p[2]} << 16;
    StoreDword(row + 4 * x, swap ? SwapOuter(w) : w);
  }
}

void NarrowPixels(uint8_t* row, size_t first, size_t end, bool swap) {
  for (size_t x = first; x < end; ++x) {
    uint32_t w = LoadDword(row + 4 * x);
    if (swap) w = SwapOuter(w);
    StoreWord(row + 3 * x, w);
    row[3 * x + 2] = static_cast<uint8_t>(w >> 16);
  }
}

void SwapPixels(uint8_t* row, size_t first, size_t end) {
  for (size_t x = first; x < end; ++x)
    std::swap(row[3 * x], row[3 * x + 2]);
}

}  // namespace

void Widen24To32(uint8_t* row, size_t width, bool swap) {
  size_t left = width;
  WidenVectors* const vectors = VNCORE_VECTOR_FORM(nullptr, WidenEightsAvx2);
  if (vectors && width >= 16) {
    // The eights end where their stores of 32 bytes fall on whole cache lines.
    const size_t ragged = reinterpret_cast<uintptr_t>(row + 4 * width) / 4 % 8;
    WidenPixels(row, width - ragged, width, swap);
    left = vectors(row, width - ragged, swap);
  }
  WidenPixels(row, 0, left, swap);
}

void Narrow32To24(uint8_t* row, size_t width, bool swap) {
  size_t shuffled = 0;
  NarrowVectors* const vectors = VNCORE_VECTOR_FORM(nullptr, NarrowEightsAvx2);
  if (vectors && width > 3) {
    shuffled = (width - 3) & ~size_t{7};
    vectors(row, shuffled, swap);
  }
  NarrowPixels(row, shuffled, width, swap);
}

void SwapRedBlue24(uint8_t* row, size_t width) {
  size_t shuffled = 0;
  SwapVectors* const vectors = VNCORE_VECTOR_FORM(nullptr, SwapSixteensAvx2);
  if (vectors) {
    shuffled = width & ~size_t{15};
    vectors(row, shuffled);
  }
  SwapPixels(row, shuffled, width);
}

void SwapRedBlue32(uint8_t* row, size_t width) {
  for (size_t x = 0; x < width; ++x)
    StoreDword(row + 4 * x, SwapOuter(LoadDword(row + 4 * x)));
}

}  // namespace vn
