// Cells of a row averaged, eight new pixels a turn.
#include <immintrin.h>

#include "geometry/row_cells_loops.h"

namespace vn {
namespace {

constexpr uint32_t kChunk1 = 16, kChunk3 = 12;  // bytes of a chunk that count

__m256i Load256(const void* at) { return _mm256_loadu_si256(static_cast<const __m256i*>(at)); }
__m128i Load128(const void* at) { return _mm_loadu_si128(static_cast<const __m128i*>(at)); }

__m256i LoadLanes(const uint8_t* low, const uint8_t* high) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(Load128(low)), Load128(high), 1);
}

// Which of a plan's forms for two lanes register `j` of a group takes.
uint32_t LanesOf(uint32_t larger, uint32_t j) {
  return (larger >> j & 1) | (larger >> (j + 3) & 2);
}

// Groups of four bytes become sums of two words, one channel in each group.
__m256i PairSums(__m256i chunk, __m256i mask) {
  return _mm256_maddubs_epi16(_mm256_shuffle_epi8(chunk, mask), _mm256_set1_epi8(1));
}

// The average of a cell in each lane, as dwords: three channels and a 0.
template <bool HasFull>
__m256i Average3(const CellPlan& plan, const uint8_t* low, const uint8_t* high, uint32_t lanes) {
  __m256i sums = _mm256_setzero_si256();
  if constexpr (HasFull) {
    const __m256i all = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(0, 3, 6, 9, 1, 4, 7, 10, 2, 5, 8, 11, -1, -1, -1, -1));
    for (uint32_t i = 0; i < plan.fullChunks; ++i, low += kChunk3, high += kChunk3)
      sums = _mm256_add_epi16(sums, PairSums(LoadLanes(low, high), all));
  }
  sums = _mm256_add_epi16(sums, PairSums(LoadLanes(low, high), Load256(plan.masks[lanes])));
  const __m256i whole = _mm256_madd_epi16(sums, _mm256_set1_epi16(1));
  return _mm256_srli_epi32(_mm256_mullo_epi32(whole, Load256(plan.laneReciprocals[lanes])), 24);
}

template <bool HasFull>
void Average3Groups(const CellPlan& plan, const uint8_t* source, uint8_t* target) {
  // Pixels of four bytes close up to three.
  const __m256i close = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
  for (uint32_t group = 0; group < plan.groups; ++group, target += 3 * kCellGroup) {
    const uint32_t* starts = plan.starts + group * kCellGroup;
    const uint32_t larger = plan.larger[group];
    __m256i pixels[4];
#pragma GCC unroll 4
    for (uint32_t j = 0; j < 4; ++j) {
      pixels[j] =
          Average3<HasFull>(plan, source + starts[j], source + starts[j + 4], LanesOf(larger, j));
    }
    const __m256i packed = _mm256_packus_epi16(_mm256_packus_epi32(pixels[0], pixels[1]),
                                               _mm256_packus_epi32(pixels[2], pixels[3]));
    const __m256i closed = _mm256_shuffle_epi8(packed, close);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm256_castsi256_si128(closed));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + 12), _mm256_extracti128_si256(closed, 1));
  }
}

// The forms of a plan for the four pixels of each lane.
__m256i LoadQuads(const void* forms, uint32_t low, uint32_t high) {
  const auto* const at = static_cast<const uint8_t*>(forms);
  return LoadLanes(at + 16 * low, at + 16 * high);
}

// The sum of a cell in each lane, in two quadwords.
__m256i Sum1(const CellPlan& plan, const uint8_t* low, const uint8_t* high, uint32_t lanes) {
  const __m256i zero = _mm256_setzero_si256();
  __m256i sums = zero;
  for (uint32_t i = 0; i < plan.fullChunks; ++i, low += kChunk1, high += kChunk1)
    sums = _mm256_add_epi64(sums, _mm256_sad_epu8(LoadLanes(low, high), zero));
  const __m256i part = _mm256_and_si256(LoadLanes(low, high), Load256(plan.masks[lanes]));
  return _mm256_add_epi64(sums, _mm256_sad_epu8(part, zero));
}

// The averages of four cells of up to four pixels in each lane, as dwords.
__m256i AverageQuads(const CellPlan& plan, const uint8_t* low, const uint8_t* high,
                     uint32_t lowLarger, uint32_t highLarger) {
  const __m256i pairs =
      PairSums(LoadLanes(low, high), LoadQuads(plan.quadShuffles, lowLarger, highLarger));
  const __m256i whole = _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
  const __m256i reciprocals = LoadQuads(plan.pixelReciprocals, lowLarger, highLarger);
  return _mm256_srli_epi32(_mm256_mullo_epi32(whole, reciprocals), 24);
}

}  // namespace

void AverageSmallCells1Avx2(const CellPlan& plan, const uint8_t* source, uint8_t* target) {
  constexpr uint32_t kGroups = 4, kHalf = kGroups / 2 * kCellGroup;
  for (uint32_t group = 0; group < plan.groups; group += kGroups, target += 2 * kHalf) {
    const uint32_t* starts = plan.starts + group * kCellGroup;
    const uint8_t* larger = plan.larger + group;
    __m256i pixels[4];
#pragma GCC unroll 4
    for (uint32_t j = 0; j < 4; ++j) {
      // Lanes start 16 pixels apart, where packing leaves them.
      const uint32_t shift = j % 2 * 4;
      pixels[j] = AverageQuads(plan, source + starts[4 * j], source + starts[kHalf + 4 * j],
                               larger[j / 2] >> shift & 15, larger[2 + j / 2] >> shift & 15);
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target),
                        _mm256_packus_epi16(_mm256_packus_epi32(pixels[0], pixels[1]),
                                            _mm256_packus_epi32(pixels[2], pixels[3])));
  }
}

void AverageCells3Avx2(const CellPlan& plan, const uint8_t* source, uint8_t* target) {
  if (plan.fullChunks) {
    Average3Groups<true>(plan, source, target);
  } else {
    Average3Groups<false>(plan, source, target);
  }
}

void AverageCells1Avx2(const CellPlan& plan, const uint8_t* source, uint8_t* target) {
  // The lowest bytes of the dwords of both lanes, one behind the other.
  const __m256i close =
      _mm256_setr_epi8(3, 7, 11, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1,
                       3, 7, 11, 15, -1, -1, -1, -1, -1, -1, -1, -1);
  for (uint32_t group = 0; group < plan.groups; ++group, target += kCellGroup) {
    const uint32_t* starts = plan.starts + group * kCellGroup;
    const uint32_t larger = plan.larger[group];
    __m256i sums[4];
#pragma GCC unroll 4
    for (uint32_t j = 0; j < 4; ++j)
      sums[j] = Sum1(plan, source + starts[j], source + starts[j + 4], LanesOf(larger, j));
    // Two half sums of four pixels each, in dwords, to four sums a lane.
    const __m256i first = _mm256_or_si256(sums[0], _mm256_slli_epi64(sums[1], 32));
    const __m256i second = _mm256_or_si256(sums[2], _mm256_slli_epi64(sums[3], 32));
    const __m256i whole = _mm256_add_epi32(_mm256_unpacklo_epi64(first, second),
                                           _mm256_unpackhi_epi64(first, second));
    const __m256i reciprocals = LoadQuads(plan.pixelReciprocals, larger & 15, larger >> 4);
    // The quotient is the top byte of the product.
    const __m256i bytes = _mm256_shuffle_epi8(_mm256_mullo_epi32(whole, reciprocals), close);
    _mm_storel_epi64(
        reinterpret_cast<__m128i*>(target),
        _mm_or_si128(_mm256_castsi256_si128(bytes), _mm256_extracti128_si256(bytes, 1)));
  }
}

}  // namespace vn
