// Memory for the rows of paints that come after one another.
#ifndef VNCORE_DEVICE_PAINT_SCRATCH_H
#define VNCORE_DEVICE_PAINT_SCRATCH_H

#include <cstring>

#include "kernel/scratch_buffer.h"

namespace vn {

// What a buffer is for.
enum class PaintSlot : uint8_t {
  kFetched,  // rows as they are stored
  kScaled,
  kBand,
  kErrors,
  kWave,
  kColors,
  kSums,
  kEvenLevels,
  kOddLevels
};

// A buffer for each purpose, kept for the next paint and made anew when that needs a larger one.
class PaintScratch {
 public:
  // `count` zeroed elements, until the slot is asked for again. Null when memory fails, and for a size
  // that no 32-bit block can have.
  template <class T>
  T* Zeroed(PaintSlot slot, uint64_t count) {
    if (count > UINT32_MAX / sizeof(T)) return nullptr;
    Buffer& buffer = buffers_[static_cast<size_t>(slot)];
    const auto bytes = static_cast<size_t>(count) * sizeof(T);
    if (buffer.memory && bytes <= buffer.bytes) {
      std::memset(buffer.memory.data(), 0, bytes);
    } else {
      buffer = {};  // the old one first: two of them are never needed
      buffer = {ScratchBuffer<uint8_t>(bytes, Fill::kZero), bytes};
    }
    return reinterpret_cast<T*>(buffer.memory.data());
  }

 private:
  struct Buffer {
    ScratchBuffer<uint8_t> memory;
    size_t bytes = 0;
  };
  Buffer buffers_[9];
};

}  // namespace vn

#endif
