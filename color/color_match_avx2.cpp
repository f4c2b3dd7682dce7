// Distances of eight entries at a time.
#include "color/color_match_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

// Eights of a table's entries in turn. Lanes behind the table are not read.
class Eights {
 public:
  Eights(const uint8_t* entries, uint32_t count)
      : at_(entries), left_(_mm256_set1_epi32(static_cast<int>(count))) {}

  // The channels of the next eight as words: entries 0, 1, 4 and 5, and the others.
  void Load(__m256i words[2]) {
    there_ = _mm256_cmpgt_epi32(left_, positions_);
    const __m256i entries =
        _mm256_and_si256(_mm256_maskload_epi32(reinterpret_cast<const int*>(at_), there_),
                         _mm256_set1_epi32(0x00FFFFFF));
    words[0] = _mm256_unpacklo_epi8(entries, _mm256_setzero_si256());
    words[1] = _mm256_unpackhi_epi8(entries, _mm256_setzero_si256());
  }
  // The largest number in the lanes behind the table.
  __m256i Outside() const { return _mm256_xor_si256(there_, _mm256_set1_epi32(-1)); }
  __m256i Positions() const { return positions_; }
  void Advance() {
    at_ += 32;
    positions_ = _mm256_add_epi32(positions_, _mm256_set1_epi32(8));
  }

 private:
  const uint8_t* at_;
  __m256i left_;
  __m256i positions_ = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  __m256i there_ = _mm256_setzero_si256();
};

// The channels of a colour as words, in every group of four.
__m256i WordsOf(uint32_t color) {
  return _mm256_unpacklo_epi8(_mm256_set1_epi32(static_cast<int>(color & 0x00FFFFFF)),
                              _mm256_setzero_si256());
}

// Eight squared lengths of differences.
__m256i SquaresOf(const __m256i words[2]) {
  return _mm256_hadd_epi32(_mm256_madd_epi16(words[0], words[0]),
                           _mm256_madd_epi16(words[1], words[1]));
}

uint32_t LeastOf(__m256i lanes) {
  __m128i four = _mm_min_epu32(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1));
  four = _mm_min_epu32(four, _mm_shuffle_epi32(four, _MM_SHUFFLE(1, 0, 3, 2)));
  four = _mm_min_epu32(four, _mm_shuffle_epi32(four, _MM_SHUFFLE(2, 3, 0, 1)));
  return static_cast<uint32_t>(_mm_cvtsi128_si32(four));
}

}  // namespace

NearestKeys NearestKeysAvx2(const uint8_t* entries, uint32_t count, uint32_t wanted) {
  const __m256i color = WordsOf(wanted);
  __m256i first = _mm256_set1_epi32(-1), last = first;
  Eights eights(entries, count);
  for (uint32_t i = 0; i < count; i += 8, eights.Advance()) {
    __m256i words[2];
    eights.Load(words);
    for (__m256i& half : words)
      half = _mm256_sub_epi16(half, color);
    const __m256i keys = _mm256_or_si256(_mm256_slli_epi32(SquaresOf(words), 8), eights.Outside());
    const __m256i position = eights.Positions();
    const __m256i fromEnd = _mm256_sub_epi32(_mm256_set1_epi32(255), position);
    first = _mm256_min_epu32(first, _mm256_or_si256(keys, position));
    last = _mm256_min_epu32(last, _mm256_or_si256(keys, fromEnd));
  }
  return {LeastOf(first), LeastOf(last)};
}

uint32_t MeasureCubeAvx2(const uint8_t* entries, uint32_t count, uint32_t lowColor,
                         uint32_t highColor, uint32_t* nearest) {
  const __m256i low = WordsOf(lowColor), high = WordsOf(highColor);
  __m256i least = _mm256_set1_epi32(-1);
  Eights eights(entries, count);
  for (uint32_t i = 0; i < count; i += 8, eights.Advance()) {
    __m256i words[2], inner[2], outer[2];
    eights.Load(words);
    for (int half = 0; half < 2; ++half) {
      const __m256i above = _mm256_sub_epi16(words[half], low);
      const __m256i below = _mm256_sub_epi16(high, words[half]);
      inner[half] = _mm256_min_epi16(_mm256_min_epi16(above, below), _mm256_setzero_si256());
      outer[half] = _mm256_max_epi16(above, below);
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(nearest + i), SquaresOf(inner));
    least = _mm256_min_epu32(least, _mm256_or_si256(SquaresOf(outer), eights.Outside()));
  }
  return LeastOf(least);
}

}  // namespace vn
