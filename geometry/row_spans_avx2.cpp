// Spans of a row interpolated, 32 bytes a turn.
#include <immintrin.h>

#include "geometry/row_spans_loops.h"

namespace vn {
namespace {

__m256i Load(const void* at) { return _mm256_loadu_si256(static_cast<const __m256i*>(at)); }
__m128i LoadHalf(const uint8_t* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

__m256i Quarters(const SpanPiece& piece, uint32_t first, const uint8_t* source) {
  const __m256i bytes =
      _mm256_inserti128_si256(_mm256_castsi128_si256(LoadHalf(source + piece.starts[first])),
                              LoadHalf(source + piece.starts[first + 1]), 1);
  return _mm256_maddubs_epi16(_mm256_shuffle_epi8(bytes, Load(piece.shuffles[first])),
                              Load(piece.weights[first]));
}

}  // namespace

void InterpolateSpansAvx2(const SpanPlan& plan, const SpanPiece* pieces, const uint8_t* source,
                          uint8_t* target) {
  const __m256i multiplier = _mm256_set1_epi16(static_cast<short>(plan.multiplier));
  const __m128i shift = _mm_cvtsi32_si128(plan.shift);
  for (uint32_t i = 0; i < plan.pieces; ++i) {
    const __m256i first = _mm256_mulhi_epu16(Quarters(pieces[i], 0, source), multiplier);
    const __m256i second = _mm256_mulhi_epu16(Quarters(pieces[i], 2, source), multiplier);
    const size_t at = i + 1 < plan.pieces ? size_t{i} * kSpanPiece : plan.lastStart;
    _mm256_storeu_si256(
        reinterpret_cast<__m256i*>(target + at),
        _mm256_packus_epi16(_mm256_srl_epi16(first, shift), _mm256_srl_epi16(second, shift)));
  }
}

}  // namespace vn
