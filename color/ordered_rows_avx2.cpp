// Ordered dithering of 32 pixels a turn.
#include "color/ordered_rows_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

constexpr size_t kTurn = 32;

__m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

// The eight thresholds, each for the four bytes of a pixel.
__m256i ForPixels(const uint8_t* thresholds) {
  const __m128i eight = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(thresholds));
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(eight),
                             _mm256_setr_epi8(0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4,
                                              4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7));
}

// All ones in the bytes that are above the threshold, of which `above` is one more.
__m256i Above(__m256i bytes, __m256i above) {
  return _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, above), bytes);
}

// The low bytes of 32 dwords, in order.
__m256i Packed(const __m256i v[4]) {
  const __m256i bytes =
      _mm256_packus_epi16(_mm256_packus_epi32(v[0], v[1]), _mm256_packus_epi32(v[2], v[3]));
  return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}

// Calls index(words of eight pixels) for the dwords of a turn.
template <class Index>
inline __m256i IndexesOf(const uint8_t* pixels, Index index) {
  __m256i v[4];
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i)
    v[i] = index(Load(pixels + 32 * i));
  return Packed(v);
}

__m256i Field(__m256i v, int shift, int mask) {
  return _mm256_and_si256(_mm256_srli_epi32(v, shift), _mm256_set1_epi32(mask));
}

}  // namespace

size_t Ordered1Avx2(const uint8_t* grays, const uint8_t* thresholds, uint8_t* target,
                    size_t count) {
  const __m128i eight = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(thresholds));
  const __m256i above = _mm256_add_epi8(_mm256_broadcastq_epi64(eight), _mm256_set1_epi8(1));
  // The first pixel is the high bit of its byte.
  const __m256i turn = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8));
  size_t done = 0;
  for (; done + kTurn <= count; done += kTurn) {
    const __m256i light = Above(Load(grays + done), above);
    const int bits = _mm256_movemask_epi8(_mm256_shuffle_epi8(light, turn));
    __builtin_memcpy(target + done / 8, &bits, sizeof bits);
  }
  return done;
}

size_t Ordered4Avx2(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                    size_t count) {
  const __m256i above = _mm256_add_epi8(ForPixels(thresholds), _mm256_set1_epi8(1));
  size_t done = 0;
  for (; done + kTurn <= count; done += kTurn) {
    // Blue 4, green 2, red 1, and 8 with any of them: a byte holds at most the sum.
    const __m256i indexes = IndexesOf(pixels + 4 * done, [above](__m256i words) {
      const __m256i full = Above(words, above);
      const __m256i bits = _mm256_or_si256(_mm256_or_si256(Field(full, 0, 4), Field(full, 8, 2)),
                                           Field(full, 16, 1));
      const __m256i none = _mm256_cmpeq_epi32(bits, _mm256_setzero_si256());
      return _mm256_or_si256(bits, _mm256_andnot_si256(none, _mm256_set1_epi32(8)));
    });
    // Pairs to bytes, the first in the high nibble.
    const __m256i pairs = _mm256_maddubs_epi16(indexes, _mm256_set1_epi16(0x0110));
    const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(pairs, pairs), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + done / 2), _mm256_castsi256_si128(bytes));
  }
  return done;
}

size_t Ordered8Avx2(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                    size_t count) {
  // What the pattern adds, and what it takes away: of each pixel one of them is 0.
  const __m256i shifts =
      _mm256_and_si256(_mm256_srli_epi16(ForPixels(thresholds), 3), _mm256_set1_epi8(0x1F));
  const __m256i middle = _mm256_set1_epi8(16);
  const __m256i more = _mm256_subs_epu8(shifts, middle), less = _mm256_subs_epu8(middle, shifts);
  size_t done = 0;
  for (; done + kTurn <= count; done += kTurn) {
    Store(target + done, IndexesOf(pixels + 4 * done, [more, less](__m256i words) {
            const __m256i v = _mm256_subs_epu8(_mm256_adds_epu8(words, more), less);
            return _mm256_or_si256(_mm256_or_si256(Field(v, 16, 0xE0), Field(v, 11, 0x1C)),
                                   Field(v, 6, 0x03));
          }));
  }
  return done;
}

}  // namespace vn
