// Grays of 32 pixels a turn.
#include "color/gray_rows_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

const __m128i* At(const uint8_t* p) { return reinterpret_cast<const __m128i*>(p); }

// Loads eight pixels as four bytes each, of which the last does not count. At 24 bits it reads four
// bytes beyond them.
template <int Bits>
inline __m256i EightPixels(const uint8_t* p) {
  if constexpr (Bits == 32) return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  const __m256i apart = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, 0, 1,
                                         2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  const __m256i pixels = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(At(p))),
                                                 _mm_loadu_si128(At(p + 12)), 1);
  return _mm256_shuffle_epi8(pixels, apart);
}

// Weighted sums of pairs of channels, then of the pairs. The packing steps work within the halves
// of a register, and one permutation at the end puts the fours in order.
template <int Bits>
size_t Grays(const uint8_t* source, uint8_t* target, size_t width, int weightsOfPixel) {
  constexpr size_t kBytes = Bits / 8;
  constexpr size_t kBehind = Bits == 24 ? 2 : 0;  // pixels in which the bytes beyond lie
  const __m256i weights = _mm256_set1_epi32(weightsOfPixel);
  const __m256i half = _mm256_set1_epi16(4);
  const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
  size_t x = 0;
  for (; x + 32 + kBehind <= width; x += 32) {
    const uint8_t* p = source + x * kBytes;
    const __m256i a = _mm256_maddubs_epi16(EightPixels<Bits>(p), weights);
    const __m256i b = _mm256_maddubs_epi16(EightPixels<Bits>(p + 8 * kBytes), weights);
    const __m256i c = _mm256_maddubs_epi16(EightPixels<Bits>(p + 16 * kBytes), weights);
    const __m256i d = _mm256_maddubs_epi16(EightPixels<Bits>(p + 24 * kBytes), weights);
    const __m256i ab = _mm256_srli_epi16(_mm256_add_epi16(_mm256_hadd_epi16(a, b), half), 3);
    const __m256i cd = _mm256_srli_epi16(_mm256_add_epi16(_mm256_hadd_epi16(c, d), half), 3);
    const __m256i grays = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(ab, cd), order);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target + x), grays);
  }
  return x;
}

// Red 2, green 5, blue 1.
constexpr int kBgr = 0x00020501, kRgb = 0x00010502;

}  // namespace

size_t Grays24BgrAvx2(const uint8_t* source, uint8_t* target, size_t width) {
  return Grays<24>(source, target, width, kBgr);
}
size_t Grays24RgbAvx2(const uint8_t* source, uint8_t* target, size_t width) {
  return Grays<24>(source, target, width, kRgb);
}
size_t Grays32BgrAvx2(const uint8_t* source, uint8_t* target, size_t width) {
  return Grays<32>(source, target, width, kBgr);
}
size_t Grays32RgbAvx2(const uint8_t* source, uint8_t* target, size_t width) {
  return Grays<32>(source, target, width, kRgb);
}

}  // namespace vn
