// Colours in eights: four bytes a pixel in a register, blue, green, red, and one that means
// nothing.
#include "color/color_rows_avx2.h"

#include <immintrin.h>

namespace vn {
namespace {

__m128i Load16(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void Store32(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
__m256i BothLanes(__m128i v) { return _mm256_broadcastsi128_si256(v); }
__m256i Joined(__m128i low, __m128i high) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
}
__m256i Masked(__m256i v, int mask) { return _mm256_and_si256(v, _mm256_set1_epi32(mask)); }

// Four entries of a table. Their places come out of one word: a load saved for each.
__m128i Entries(const uint8_t* indexes, const uint8_t* colors) {
  uint32_t four;
  __builtin_memcpy(&four, indexes, sizeof four);
  const auto entry = [=](uint32_t index) {
    int word;
    __builtin_memcpy(&word, colors + 4 * size_t{index}, sizeof word);
    return word;
  };
  return _mm_setr_epi32(entry(four & 255), entry(four >> 8 & 255), entry(four >> 16 & 255),
                        entry(four >> 24));
}

// At 24 bits two loads of 16 bytes hold four pixels each, and four bytes that follow. A -1 in a
// pattern gives a zero byte.
template <int Bits>
__m256i LoadEight(const uint8_t* p, const uint8_t* colors) {
  if constexpr (Bits == 0) {  // grays
    const __m128i grays = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    return _mm256_shuffle_epi8(
        BothLanes(grays), _mm256_setr_epi8(0, 0, 0, -1, 1, 1, 1, -1, 2, 2, 2, -1, 3, 3, 3, -1, 4, 4,
                                           4, -1, 5, 5, 5, -1, 6, 6, 6, -1, 7, 7, 7, -1));
  }
  if constexpr (Bits == 8) return Joined(Entries(p, colors), Entries(p + 4, colors));
  if constexpr (Bits == 24) {
    return _mm256_shuffle_epi8(
        Joined(Load16(p), Load16(p + 12)),
        BothLanes(_mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1)));
  }
  if constexpr (Bits == 32) return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  // Each field in the top five bits of its byte, and its own top bits repeated below them.
  const __m256i words = _mm256_cvtepu16_epi32(Load16(p));
  const __m256i tops = _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi32(Masked(words, 0x7C00), 9),
                                                       _mm256_slli_epi32(Masked(words, 0x03E0), 6)),
                                       _mm256_slli_epi32(Masked(words, 0x001F), 3));
  return _mm256_or_si256(tops, Masked(_mm256_srli_epi32(tops, 5), 0x070707));
}

// Words of 16 bits in the low halves.
template <bool Swap>
__m256i FieldsOf(__m256i v) {
  const __m256i blue =
      Swap ? _mm256_slli_epi32(Masked(v, 0xF8), 7) : Masked(_mm256_srli_epi32(v, 3), 0x001F);
  const __m256i red =
      Swap ? Masked(_mm256_srli_epi32(v, 19), 0x001F) : Masked(_mm256_srli_epi32(v, 9), 0x7C00);
  const __m256i green = Masked(_mm256_srli_epi32(v, 6), 0x03E0);
  return _mm256_or_si256(_mm256_or_si256(red, green), blue);
}

template <bool Swap>
void StoreEight24(uint8_t* p, __m256i v) {
  const __m128i narrow =
      Swap ? _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)
           : _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(v, BothLanes(narrow)),
                                                     _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(packed));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 16), _mm256_extracti128_si256(packed, 1));
}

template <bool Swap, bool Clear>
void StoreEight32(uint8_t* p, __m256i v) {
  constexpr char kFourth[] = {Clear ? -1 : 3, Clear ? -1 : 7, Clear ? -1 : 11, Clear ? -1 : 15};
  if constexpr (Swap) {
    v = _mm256_shuffle_epi8(v, BothLanes(_mm_setr_epi8(2, 1, 0, kFourth[0], 6, 5, 4, kFourth[1], 10,
                                                       9, 8, kFourth[2], 14, 13, 12, kFourth[3])));
  } else if constexpr (Clear) {
    v = Masked(v, 0x00FFFFFF);
  }
  Store32(p, v);
}

// Sixteen pixels a turn.
template <int From, int To, bool Swap>
size_t Convert(const uint8_t* source, uint8_t* target, size_t width, const uint8_t* colors) {
  constexpr size_t kBehind = From == 24 ? 2 : 0;  // pixels that loads take with them
  constexpr size_t kEight = From ? From : 8;      // bytes of eight pixels
  size_t x = 0;
  for (; x + 16 + kBehind <= width; x += 16) {
    const __m256i low = LoadEight<From>(source, colors);
    const __m256i high = LoadEight<From>(source + kEight, colors);
    if constexpr (To == 16) {
      const __m256i words = _mm256_packus_epi32(FieldsOf<Swap>(low), FieldsOf<Swap>(high));
      Store32(target, _mm256_permute4x64_epi64(words, 0xD8));
    } else if constexpr (To == 24) {
      StoreEight24<Swap>(target, low);
      StoreEight24<Swap>(target + 24, high);
    } else {
      // A loaded table entry brings its flags along.
      StoreEight32<Swap, From == 8>(target, low);
      StoreEight32<Swap, From == 8>(target + 32, high);
    }
    source += 2 * kEight;
    target += 2 * To;
  }
  return x;
}

template <int From, int To>
constexpr ColorVectors* kOrdered = Convert<From, To, false>;
template <int Bits>
constexpr ColorVectors* kOrdered<Bits, Bits> = nullptr;

}  // namespace

#define VNCORE_FROM(bits)                                                                         \
  {                                                                                               \
    {kOrdered<bits, 16>, Convert<bits, 16, true>}, {kOrdered<bits, 24>, Convert<bits, 24, true>}, \
    {                                                                                             \
      kOrdered<bits, 32>, Convert<bits, 32, true>                                                 \
    }                                                                                             \
  }
ColorVectors* const kColorVectorsAvx2[5][3][2] = {VNCORE_FROM(0), VNCORE_FROM(8), VNCORE_FROM(16),
                                                  VNCORE_FROM(24), VNCORE_FROM(32)};

}  // namespace vn
