// Indexes of a byte packed, 32 a turn.
#include "color/index_rows_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

constexpr size_t kTurn = 32;

__m256i Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }

}  // namespace

size_t WriteIndexes1Avx2(const uint8_t* indexes, size_t count, uint8_t* target) {
  // The first pixel is the high bit of its byte.
  const __m256i turn = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8));
  size_t done = 0;
  for (; done + kTurn <= count; done += kTurn) {
    const __m256i high = _mm256_slli_epi16(Load(indexes + done), 7);
    const int bits = _mm256_movemask_epi8(_mm256_shuffle_epi8(high, turn));
    __builtin_memcpy(target + done / 8, &bits, sizeof bits);
  }
  return done;
}

size_t WriteIndexes4Avx2(const uint8_t* indexes, size_t count, uint8_t* target) {
  size_t done = 0;
  for (; done + kTurn <= count; done += kTurn) {
    // Pairs to bytes, the first in the high nibble.
    const __m256i nibbles = _mm256_and_si256(Load(indexes + done), _mm256_set1_epi8(15));
    const __m256i pairs = _mm256_maddubs_epi16(nibbles, _mm256_set1_epi16(0x0110));
    const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(pairs, pairs), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + done / 2), _mm256_castsi256_si128(bytes));
  }
  return done;
}

}  // namespace vn
