// Ordered dithering of 32 pixels a turn.
#include "color/ordered_rows_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

constexpr size_t kTurn = 32;

using Vector = __m256i;

Vector Load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const Vector*>(p)); }
__m128i LoadHalf(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void Store(uint8_t* p, Vector v) { _mm256_storeu_si256(reinterpret_cast<Vector*>(p), v); }

// The eight thresholds, each for the four bytes of a pixel.
Vector ForPixels(const uint8_t* thresholds) {
  const __m128i eight = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(thresholds));
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(eight),
                             _mm256_setr_epi8(0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4,
                                              4, 4, 5, 5, 5, 5, 6, 6, 6, 6, 7, 7, 7, 7));
}

// All ones in the bytes that are above the threshold, of which `above` is one more.
Vector Above(Vector bytes, Vector above) {
  return _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, above), bytes);
}

// Eight pixels in dwords, from four bytes each or from three, of which four more are read. The
// patterns put blue first.
template <OrderedPixels Pixels>
Vector LoadEight(const uint8_t* p) {
  if constexpr (Pixels == OrderedPixels::k32) return Load(p);
  const __m128i spread = Pixels == OrderedPixels::k24
                             ? _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1)
                             : _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
  const Vector both = _mm256_set_m128i(LoadHalf(p + 12), LoadHalf(p));
  return _mm256_shuffle_epi8(both, _mm256_broadcastsi128_si256(spread));
}

// Calls bits(dwords of eight pixels) for a turn: bytes of which `weights` makes each pixel's sum.
// The sums' words, in fours of which the even ones come first.
template <OrderedPixels Pixels, class Bits>
inline void SumsOf(const uint8_t* pixels, int weights, Bits bits, Vector sums[2]) {
  Vector v[4];
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) {
    const Vector part =
        bits(LoadEight<Pixels>(pixels + (Pixels == OrderedPixels::k32 ? 32 : 24) * i));
    v[i] = _mm256_madd_epi16(_mm256_maddubs_epi16(part, _mm256_set1_epi32(weights)),
                             _mm256_set1_epi16(1));
  }
  sums[0] = _mm256_packus_epi32(v[0], v[1]);
  sums[1] = _mm256_packus_epi32(v[2], v[3]);
}

// The words' low bytes, in the pixels' order.
Vector Packed(Vector low, Vector high) {
  return _mm256_permutevar8x32_epi32(_mm256_packus_epi16(low, high),
                                     _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}

// Pixels of three bytes are read with two more.
template <OrderedPixels Pixels>
constexpr size_t kBehind = Pixels == OrderedPixels::k32 ? 0 : 2;
template <OrderedPixels Pixels>
constexpr size_t kPixelBytes = Pixels == OrderedPixels::k32 ? 4 : 3;

size_t Ordered1(const uint8_t* grays, const uint8_t* thresholds, uint8_t* target, size_t count) {
  const __m128i eight = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(thresholds));
  const Vector above = _mm256_add_epi8(_mm256_broadcastq_epi64(eight), _mm256_set1_epi8(1));
  // The first pixel is the high bit of its byte.
  const Vector turn = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8));
  size_t done = 0;
  for (; done + kTurn <= count; done += kTurn) {
    const Vector light = Above(Load(grays + done), above);
    const int bits = _mm256_movemask_epi8(_mm256_shuffle_epi8(light, turn));
    __builtin_memcpy(target + done / 8, &bits, sizeof bits);
  }
  return done;
}

template <OrderedPixels Pixels>
size_t Ordered4(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target, size_t count) {
  const Vector above = _mm256_add_epi8(ForPixels(thresholds), _mm256_set1_epi8(1));
  size_t done = 0;
  for (; done + kTurn + kBehind<Pixels> <= count; done += kTurn) {
    // Blue 4, green 2, red 1, and 8 with any of them.
    Vector sums[2];
    SumsOf<Pixels>(
        pixels + kPixelBytes<Pixels> * done, 0x00010204,
        [above](Vector words) {
          return _mm256_and_si256(Above(words, above), _mm256_set1_epi8(1));
        },
        sums);
    const Vector bits = Packed(sums[0], sums[1]);
    const Vector none = _mm256_cmpeq_epi8(bits, _mm256_setzero_si256());
    const Vector indexes = _mm256_or_si256(bits, _mm256_andnot_si256(none, _mm256_set1_epi8(8)));
    // Pairs to bytes, the first in the high nibble.
    const Vector pairs = _mm256_maddubs_epi16(indexes, _mm256_set1_epi16(0x0110));
    const Vector bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(pairs, pairs), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + done / 2), _mm256_castsi256_si128(bytes));
  }
  return done;
}

template <OrderedPixels Pixels>
size_t Ordered8(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target, size_t count) {
  // What the pattern adds, and what it takes away: of each pixel one of them is 0.
  const Vector shifts =
      _mm256_and_si256(_mm256_srli_epi16(ForPixels(thresholds), 3), _mm256_set1_epi8(0x1F));
  const Vector middle = _mm256_set1_epi8(16);
  const Vector more = _mm256_subs_epu8(shifts, middle), less = _mm256_subs_epu8(middle, shifts);
  size_t done = 0;
  for (; done + kTurn + kBehind<Pixels> <= count; done += kTurn) {
    // Blue's two bits at 6, green's three at 5 times 8, red's three at 5 times 64: the index at 6.
    Vector sums[2];
    SumsOf<Pixels>(
        pixels + kPixelBytes<Pixels> * done, 0x00400801,
        [more, less](Vector words) {
          const Vector v = _mm256_subs_epu8(_mm256_adds_epu8(words, more), less);
          return _mm256_and_si256(v, _mm256_set1_epi32(0x00E0E0C0));
        },
        sums);
    Store(target + done, Packed(_mm256_srli_epi16(sums[0], 6), _mm256_srli_epi16(sums[1], 6)));
  }
  return done;
}

}  // namespace

OrderedVectors* const kOrderedVectorsAvx2[3][3] = {
    {Ordered1, Ordered1, Ordered1},
    {Ordered4<OrderedPixels::k24>, Ordered4<OrderedPixels::k24Swapped>,
     Ordered4<OrderedPixels::k32>},
    {Ordered8<OrderedPixels::k24>, Ordered8<OrderedPixels::k24Swapped>,
     Ordered8<OrderedPixels::k32>}};

}  // namespace vn
