// Byte shuffles between 24 and 32 bits, in registers.
#include "color/swizzle_24_32_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

__m128i* At(uint8_t* p) { return reinterpret_cast<__m128i*>(p); }

// Byte patterns for four pixels; -1 gives a zero byte.
__m128i WidenPattern(bool swap) {
  return swap ? _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1)
              : _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
}
__m128i NarrowPattern(bool swap) {
  return swap ? _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)
              : _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
}

}  // namespace

// Two loads of 16 bytes hold four pixels each and take four bytes of what follows with them; the
// buffer of 4 bytes a pixel reaches that far.
size_t WidenEightsAvx2(uint8_t* row, size_t end, bool swap) {
  const __m256i pattern = _mm256_broadcastsi128_si256(WidenPattern(swap));
  size_t x = end;
#pragma GCC unroll 4
  for (; x >= 8; x -= 8) {
    uint8_t* from = row + 3 * (x - 8);
    const __m256i eight = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(At(from))),
                                                  _mm_loadu_si128(At(from + 12)), 1);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(row + 4 * (x - 8)),
                        _mm256_shuffle_epi8(eight, pattern));
  }
  return x;
}

// A store of 32 bytes carries 24 of pixels; the next store, or the plain loop, puts the other 8
// right. No unread source lies there.
void NarrowEightsAvx2(uint8_t* row, size_t end, bool swap) {
  const __m256i pattern = _mm256_broadcastsi128_si256(NarrowPattern(swap));
  const __m256i join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
#pragma GCC unroll 4
  for (size_t x = 0; x < end; x += 8) {
    const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(row + 4 * x));
    const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(eight, pattern), join);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(row + 3 * x), packed);
  }
}

// 48 bytes a turn, in which a pixel can straddle two of the three registers.
void SwapSixteensAvx2(uint8_t* row, size_t end) {
  const __m128i aOwn = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, -1);
  const __m128i aNext =
      _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 1);
  const __m128i bOwn = _mm_setr_epi8(0, -1, 4, 3, 2, 7, 6, 5, 10, 9, 8, 13, 12, 11, -1, 15);
  const __m128i bLast =
      _mm_setr_epi8(-1, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i bNext =
      _mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 0, -1);
  const __m128i cLast =
      _mm_setr_epi8(14, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i cOwn = _mm_setr_epi8(-1, 3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 15, 14, 13);
  for (size_t x = 0; x < end; x += 16) {
    uint8_t* p = row + 3 * x;
    const __m128i a = _mm_loadu_si128(At(p));
    const __m128i b = _mm_loadu_si128(At(p + 16));
    const __m128i c = _mm_loadu_si128(At(p + 32));
    _mm_storeu_si128(At(p), _mm_or_si128(_mm_shuffle_epi8(a, aOwn), _mm_shuffle_epi8(b, aNext)));
    _mm_storeu_si128(At(p + 16), _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(b, bOwn),
                                                           _mm_shuffle_epi8(a, bLast)),
                                              _mm_shuffle_epi8(c, bNext)));
    _mm_storeu_si128(At(p + 32),
                     _mm_or_si128(_mm_shuffle_epi8(c, cOwn), _mm_shuffle_epi8(b, cLast)));
  }
}

}  // namespace vn
