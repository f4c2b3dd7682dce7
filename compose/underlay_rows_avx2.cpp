// Shading for AVX2: sixteen pixels a turn.
#include <immintrin.h>

#include "compose/underlay_rows.h"

namespace vn {
namespace {

// A channel goes up by what the gray is above 128 and down by what it is below; one of the two is 0,
// and both stop at the ends of a byte.
void ShadeSixteen(uint8_t* at, __m128i grays) {
  const __m128i neutral = _mm_set1_epi8(static_cast<char>(128));
  auto* to = reinterpret_cast<__m128i*>(at);
  const __m128i channels = _mm_loadu_si128(to);
  const __m128i up = _mm_adds_epu8(channels, _mm_subs_epu8(grays, neutral));
  _mm_storeu_si128(to, _mm_subs_epu8(up, _mm_subs_epu8(neutral, grays)));
}

}  // namespace

void ShadeAvx2(uint8_t* pixels, const uint8_t* grays, size_t width) {
  const __m128i first = _mm_setr_epi8(0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5);
  const __m128i second = _mm_setr_epi8(5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10);
  const __m128i third =
      _mm_setr_epi8(10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15);
  size_t x = 0;
  for (; x + 16 <= width; x += 16) {
    const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(grays + x));
    ShadeSixteen(pixels + 3 * x, _mm_shuffle_epi8(sixteen, first));
    ShadeSixteen(pixels + 3 * x + 16, _mm_shuffle_epi8(sixteen, second));
    ShadeSixteen(pixels + 3 * x + 32, _mm_shuffle_epi8(sixteen, third));
  }
  ShadePlain(pixels + 3 * x, grays + x, width - x);
}

}  // namespace vn
