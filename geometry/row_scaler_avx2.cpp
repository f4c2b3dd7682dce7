// Bytes of a row picked by masks, 16 of the new row a turn.
#include <immintrin.h>

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

}  // namespace vn
