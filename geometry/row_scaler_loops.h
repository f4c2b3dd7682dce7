// The vector loops under row_scaler.h.
#ifndef VNCORE_GEOMETRY_ROW_SCALER_LOOPS_H
#define VNCORE_GEOMETRY_ROW_SCALER_LOOPS_H

#include <cstdint>

namespace vn {

constexpr uint32_t kPickPiece = 16;      // bytes of a piece
constexpr uint32_t kMostPickSpread = 4;  // beyond it too much of what is read is thrown away

struct PickPlan {
  uint32_t pieces;          // of the new row, at least 1
  uint32_t spread;          // pieces of the old row that a new one comes from
  const uint32_t* offsets;  // first byte of the old row for each piece
  const uint8_t* masks;     // `spread` masks for each piece: bytes from 0x80 on give nothing
  uint32_t lastStart;       // where the last piece begins; it may overlap the one before it
};

using PickLoop = void (*)(const PickPlan& plan, const uint8_t* source, uint8_t* target);
void PickPiecesAvx2(const PickPlan& plan, const uint8_t* source, uint8_t* target);

// Packs pixels of 1 or 4 bits into `bytes` bytes: of each byte in `picked` what `chosen` has, a bit
// or a nibble. Both are read in eights of words, behind whose last pixel `chosen` is 0.
using PackLoop = void (*)(const uint8_t* picked, const uint8_t* chosen, uint32_t bytes,
                          uint8_t* target);
void PackBitsAvx2(const uint8_t* picked, const uint8_t* chosen, uint32_t bytes, uint8_t* target);
void PackNibblesAvx2(const uint8_t* picked, const uint8_t* chosen, uint32_t bytes, uint8_t* target);
constexpr uint32_t kPackPiece = 32;  // pixels of a turn

}  // namespace vn

#endif
