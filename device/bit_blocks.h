// What blocks of a row's columns give by the number of their ones, many blocks at a time.
#ifndef VNCORE_DEVICE_BIT_BLOCKS_H
#define VNCORE_DEVICE_BIT_BLOCKS_H

#include "device/bit_blocks_avx2.h"
#include "kernel/stepper.h"

namespace vn {

// Test it: it is empty without vectors and for blocks too wide; then each block is counted by
// CountBits. `Write` writes kBlockSlack values behind the last block's, and rows have kWindowSlack
// bytes behind the last column's.
class BitBlocks {
 public:
  // Blocks follow as `step` goes, from column `first` on. Of one the step's quotient of columns
  // counts, and with `all` also the one more where there is one. `valueOf(ones, columns)` is a byte.
  template <class ValueOf>
  BitBlocks(const Stepper& step, uint32_t first, uint32_t blocks, bool all,
            const ValueOf& valueOf) {
    const uint32_t columns = step.quotient;
    if (columns == 0 || columns + all > kMostColumns) return;
    plan_ = {step.quotient,
             step.remainder,
             step.divisor,
             step.accumulator,
             first,
             blocks,
             {columns, columns + all},
             {}};
    for (uint32_t more = 0; more < 2; ++more) {
      for (uint32_t ones = 0; ones <= plan_.columns[more]; ++ones)
        plan_.values[more][ones] = valueOf(ones, plan_.columns[more]);
    }
    Choose();
  }

  explicit operator bool() const { return loop_ != nullptr; }
  void Write(const uint8_t* bits, uint8_t* values) const { loop_(plan_, bits, values); }

 private:
  void Choose();

  BlockPlan plan_{};
  BlockLoop* loop_ = nullptr;
};

// Sets a bit in `bytes` bytes for each of `counts`, 8 a byte, that reaches the threshold (1 to 2^15),
// the first in the high bit. No count is above 2^15 - 1; up to 32 behind the last may be read.
void WriteVotes(const uint16_t* counts, uint32_t threshold, uint32_t bytes, uint8_t* target);

}  // namespace vn

#endif
