// Rows averaged and interpolated, 32 bytes a turn.
#include <immintrin.h>

#include "geometry/blend_rows_loops.h"

namespace vn {
namespace {

constexpr size_t kStep = 32;

__m256i Load(const void* at) { return _mm256_loadu_si256(static_cast<const __m256i*>(at)); }
void Store(void* at, __m256i value) { _mm256_storeu_si256(static_cast<__m256i*>(at), value); }

// Sixteen quotients: the high half of a product, shifted further.
struct Divider {
  __m256i multiplier;
  __m128i shift;
  Divider(uint16_t multiplier_, uint16_t shift_)
      : multiplier(_mm256_set1_epi16(static_cast<short>(multiplier_))),
        shift(_mm_cvtsi32_si128(shift_)) {}
  __m256i operator()(__m256i sums) const {
    return _mm256_srl_epi16(_mm256_mulhi_epu16(sums, multiplier), shift);
  }
};

// Sixteen bytes of a row as words.
__m256i Widen(const uint8_t* row) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row)));
}

}  // namespace

size_t BlendRowsAvx2(const uint8_t* a, const uint8_t* b, uint32_t step, uint32_t span,
                     uint16_t multiplier, uint16_t shift, uint8_t* target, size_t bytes) {
  const Divider divide(multiplier, shift);
  // Pairs of a and b, a in the low byte. Sums are at most 255 * 127.
  const __m256i weights = _mm256_set1_epi16(static_cast<short>(step << 8 | (span - step)));
  size_t i = 0;
  for (; i + kStep <= bytes; i += kStep) {
    const __m256i va = Load(a + i), vb = Load(b + i);
    const __m256i low = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(va, vb), weights);
    const __m256i high = _mm256_maddubs_epi16(_mm256_unpackhi_epi8(va, vb), weights);
    Store(target + i, _mm256_packus_epi16(divide(low), divide(high)));
  }
  return i;
}

size_t SumRowAvx2(const uint8_t* row, bool first, uint16_t* sums, size_t bytes) {
  size_t i = 0;
  for (; first && i + kStep / 2 <= bytes; i += kStep / 2)
    Store(sums + i, Widen(row + i));
  for (; i + kStep / 2 <= bytes; i += kStep / 2)
    Store(sums + i, _mm256_add_epi16(Load(sums + i), Widen(row + i)));
  return i;
}

size_t AverageSumsAvx2(const uint16_t* sums, uint16_t multiplier, uint16_t shift, uint8_t* target,
                       size_t bytes) {
  const Divider divide(multiplier, shift);
  size_t i = 0;
  for (; i + kStep <= bytes; i += kStep) {
    const __m256i packed =
        _mm256_packus_epi16(divide(Load(sums + i)), divide(Load(sums + i + kStep / 2)));
    Store(target + i, _mm256_permute4x64_epi64(packed, 0xD8));
  }
  return i;
}

}  // namespace vn
