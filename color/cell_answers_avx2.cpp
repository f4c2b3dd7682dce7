// Cells of eight colours at a time. Their answers are fetched one by one, which is no slower than
// the gather instruction.
#include "color/cell_answers_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

// The high five bits of each channel, side by side.
__m256i CellsOf(__m256i pixels) {
  const __m256i blue = _mm256_and_si256(_mm256_srli_epi32(pixels, 3), _mm256_set1_epi32(31));
  const __m256i green = _mm256_and_si256(_mm256_srli_epi32(pixels, 6), _mm256_set1_epi32(31 << 5));
  const __m256i red = _mm256_and_si256(_mm256_srli_epi32(pixels, 9), _mm256_set1_epi32(31 << 10));
  return _mm256_or_si256(_mm256_or_si256(blue, green), red);
}

}  // namespace

size_t CellAnswersAvx2(const uint8_t* pixels, size_t count, const uint16_t* answers,
                       uint8_t* indexes) {
  size_t x = 0;
  for (; x + 8 <= count; x += 8) {
    alignas(32) uint32_t cells[8];
    _mm256_store_si256(
        reinterpret_cast<__m256i*>(cells),
        CellsOf(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(pixels + 4 * x))));
    uint32_t seen = 0;
    for (size_t i = 0; i < 8; ++i) {
      const uint32_t answer = answers[cells[i]];
      seen |= answer;
      indexes[x + i] = static_cast<uint8_t>(answer);
    }
    if (seen & kNoAnswer) break;
  }
  return x;
}

}  // namespace vn
