#include "device/bit_blocks.h"

#include "kernel/vector.h"

namespace vn {

void BitBlocks::Choose() {
  const bool even = plan_.remainder == 0 && plan_.first == 0;
  if (even && plan_.quotient == 2) {
    loop_ = VNCORE_VECTOR_FORM(nullptr, PairValuesAvx2);
  } else if (even && plan_.quotient == 4) {
    loop_ = VNCORE_VECTOR_FORM(nullptr, NibbleValuesAvx2);
  } else if (even && plan_.quotient == 8) {
    loop_ = VNCORE_VECTOR_FORM(nullptr, ByteValuesAvx2);
  } else {
    loop_ = VNCORE_VECTOR_FORM(nullptr, BlockValuesAvx2);
  }
}

namespace {

void VotesPlain(const uint16_t* counts, uint32_t threshold, uint32_t bytes, uint8_t* target) {
  for (uint32_t i = 0; i < bytes; ++i, counts += 8) {
    uint32_t byte = 0;
    for (uint32_t k = 0; k < 8; ++k)
      byte = byte << 1 | (counts[k] >= threshold);
    target[i] = static_cast<uint8_t>(byte);
  }
}

}  // namespace

void WriteVotes(const uint16_t* counts, uint32_t threshold, uint32_t bytes, uint8_t* target) {
  VNCORE_VECTOR_FORM(VotesPlain, VotesAvx2)(counts, threshold, bytes, target);
}

}  // namespace vn
