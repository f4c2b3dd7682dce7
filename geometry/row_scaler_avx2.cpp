// Bytes of a row picked by masks, 16 of the new row a turn, and packed to bits and nibbles.
#include <immintrin.h>

#include <cstring>

#include "geometry/row_scaler_loops.h"

namespace vn {
namespace {

__m128i Load(const uint8_t* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); }

template <uint32_t Spread>
inline void PickPiece(const uint8_t* source, const uint8_t* masks, uint8_t* target) {
  __m128i picked = _mm_shuffle_epi8(Load(source), Load(masks));
  for (uint32_t i = 1; i < Spread; ++i) {
    picked = _mm_or_si128(
        picked, _mm_shuffle_epi8(Load(source + i * kPickPiece), Load(masks + i * kPickPiece)));
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), picked);
}

template <uint32_t Spread>
void PickPieces(const PickPlan& plan, const uint8_t* source, uint8_t* target) {
  // Out of the plan, which a store through a byte pointer could change.
  const uint8_t* masks = plan.masks;
  const uint32_t* offset = plan.offsets;
  uint8_t* const last = target + plan.lastStart;
  for (uint32_t i = plan.pieces; i > 1; --i) {
    PickPiece<Spread>(source + *offset++, masks, target);
    masks += Spread * kPickPiece;
    target += kPickPiece;
  }
  PickPiece<Spread>(source + *offset, masks, last);
}

}  // namespace

void PickPiecesAvx2(const PickPlan& plan, const uint8_t* source, uint8_t* target) {
  constexpr PickLoop kLoops[kMostPickSpread] = {PickPieces<1>, PickPieces<2>, PickPieces<3>,
                                                PickPieces<4>};
  kLoops[plan.spread - 1](plan, source, target);
}

namespace {

__m256i ChosenOf(const uint8_t* picked, const uint8_t* chosen) {
  return _mm256_and_si256(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(picked)),
                          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(chosen)));
}

// Left pixel in the high bit.
uint32_t BitsOf(__m256i pixels) {
  const __m256i turned = _mm256_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8, 7,
                                          6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8);
  const __m256i clear = _mm256_cmpeq_epi8(pixels, _mm256_setzero_si256());
  return ~static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_shuffle_epi8(clear, turned)));
}

// Left pixel in the high nibble.
__m128i NibblesOf(__m256i pixels) {
  const __m256i low = _mm256_or_si256(pixels, _mm256_srli_epi16(pixels, 4));
  const __m256i pairs =
      _mm256_maddubs_epi16(_mm256_and_si256(low, _mm256_set1_epi8(15)), _mm256_set1_epi16(0x0110));
  return _mm_packus_epi16(_mm256_castsi256_si128(pairs), _mm256_extracti128_si256(pairs, 1));
}

}  // namespace

void PackBitsAvx2(const uint8_t* picked, const uint8_t* chosen, uint32_t bytes, uint8_t* target) {
  for (; bytes; picked += kPackPiece, chosen += kPackPiece, target += 4) {
    const uint32_t word = BitsOf(ChosenOf(picked, chosen));
    if (bytes < 4) {
      std::memcpy(target, &word, bytes);
      return;
    }
    std::memcpy(target, &word, 4);
    bytes -= 4;
  }
}

void PackNibblesAvx2(const uint8_t* picked, const uint8_t* chosen, uint32_t bytes,
                     uint8_t* target) {
  for (; bytes; picked += kPackPiece, chosen += kPackPiece, target += 16) {
    const __m128i nibbles = NibblesOf(ChosenOf(picked, chosen));
    if (bytes < 16) {
      std::memcpy(target, &nibbles, bytes);
      return;
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), nibbles);
    bytes -= 16;
  }
}

}  // namespace vn
