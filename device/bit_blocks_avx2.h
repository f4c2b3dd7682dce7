// The vector forms of counting blocks of a row's bits; bit_blocks.cpp and the renderers call them.
#ifndef VNCORE_DEVICE_BIT_BLOCKS_AVX2_H
#define VNCORE_DEVICE_BIT_BLOCKS_AVX2_H

#include <cstdint>

namespace vn {

// Blocks of columns one behind the other, and what a block gives by the number of its ones.
struct BlockPlan {
  // To the next block's first column: `quotient` columns, and one more where the accumulator,
  // which grows by `remainder`, reaches the divisor.
  uint32_t quotient, remainder, divisor, accumulator;
  uint32_t first;  // column of the first block
  uint32_t blocks;
  uint32_t columns[2];  // counted of a block without and with the one more, 1 to kMostColumns
  uint8_t values[2][64];
};

constexpr uint32_t kMostColumns = 57;  // a window of 64 bits holds so many wherever they begin
constexpr uint32_t kWindowSlack = 8;   // bytes read behind that of the last column
constexpr uint32_t kBlockSlack = 128;  // values written behind the last block's

// Writes the values of all blocks.
using BlockLoop = void(const BlockPlan& plan, const uint8_t* bits, uint8_t* values);
BlockLoop BlockValuesAvx2;
// The same for blocks of 2, 4 or 8 columns from column 0 on, without remainder.
BlockLoop PairValuesAvx2, NibbleValuesAvx2, ByteValuesAvx2;

// WriteVotes.
void VotesAvx2(const uint16_t* counts, uint32_t threshold, uint32_t bytes, uint8_t* target);

}  // namespace vn

#endif
