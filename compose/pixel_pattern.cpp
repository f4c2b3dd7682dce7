// One pixel repeated over stretches of memory.
#include "compose/pixel_pattern.h"

#include <algorithm>
#include <cstring>

#include "kernel/vector.h"

namespace vn {

void WritePatternPeriods(const uint8_t* pattern, uint8_t* at, size_t count) {
  for (; count >= kPatternPeriod; count -= kPatternPeriod, at += kPatternPeriod)
    std::memcpy(at, pattern, kPatternPeriod);
  std::memcpy(at, pattern, count);
}

namespace {

void WriteByte(const uint8_t* pattern, uint8_t* at, size_t count) {
  std::memset(at, pattern[0], count);
}

bool IsOneByte(const uint8_t* pixel, uint32_t pixelBytes) {
  return std::all_of(pixel, pixel + pixelBytes, [&](uint8_t byte) { return byte == pixel[0]; });
}

}  // namespace

PixelPattern::PixelPattern(const uint8_t* pixel, uint32_t pixelBytes)
    : write_(IsOneByte(pixel, pixelBytes)
                 ? WriteByte
                 : VNCORE_VECTOR_FORM(WritePatternPeriods, WritePatternAvx2)) {
  for (size_t i = 0; i < sizeof bytes_; ++i)
    bytes_[i] = pixel[i % pixelBytes];
}

}  // namespace vn
