// What readers do to samples that the kernel's rows do not know: alpha, two bits a pixel.
#ifndef VNCORE_TOOLS_SAMPLES_H
#define VNCORE_TOOLS_SAMPLES_H

#include <cstddef>
#include <cstdint>

#include "kernel/pixel_format.h"

namespace vn::tool {

// `alpha` parts of `over` upon 255 - `alpha` parts of `under`, rounded; exact division by 255.
constexpr uint8_t Lay(uint32_t over, uint32_t alpha, int32_t under) {
  const uint32_t sum = over * alpha + static_cast<uint32_t>(under) * (255 - alpha) + 128;
  return static_cast<uint8_t>((sum + (sum >> 8)) >> 8);
}

// The same where `over` has been multiplied by its alpha before.
constexpr uint8_t LayShare(uint32_t over, uint32_t alpha, int32_t under) {
  const uint32_t sum = over + Lay(0, alpha, under);
  return static_cast<uint8_t>(sum < 255 ? sum : 255);
}

// Clears the bits behind the last pixel of a row, which are nothing of the picture's.
inline void ClearBehind(uint8_t* row, int32_t width, int32_t bits) {
  const int64_t used = int64_t{width} * bits;
  if (used % 8) row[used / 8] = static_cast<uint8_t>(row[used / 8] & 0xFF00u >> used % 8);
}

// Two bits take every fifth of sixteen grays, which are the same grays.
inline constexpr uint32_t kGrayStepOfTwoBits = 5;

// Turns `width` pixels of two bits, the leftmost in the high bits, into a row of four bits that
// holds them times `step`.
inline void WidenTwoBits(const uint8_t* twoBits, int32_t width, uint32_t step, uint8_t* row) {
  PixelWriter<4> writer(row);
  for (size_t x = 0; x < static_cast<size_t>(width); ++x)
    writer.Put((twoBits[x / 4] >> (~x & 3) * 2 & 3u) * step);
  writer.Finish();
}

}  // namespace vn::tool

#endif
