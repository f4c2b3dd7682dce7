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

// From here on a fill past the caches takes half the time of one through them, and whoever reads
// the pixels next waits little longer: few of them are in the caches either way.
constexpr uint64_t kStreamed = 16 << 20;

PatternWriter WriterFor(const uint8_t* pixel, uint32_t pixelBytes, uint64_t total) {
  const PatternWriter plain = IsOneByte(pixel, pixelBytes) ? WriteByte : WritePatternPeriods;
  if (total >= kStreamed) return VNCORE_VECTOR_FORM(plain, StreamPatternAvx2);
  return plain == WriteByte ? plain : VNCORE_VECTOR_FORM(plain, WritePatternAvx2);
}

}  // namespace

PixelPattern::PixelPattern(const uint8_t* pixel, uint32_t pixelBytes, uint64_t total)
    : write_(WriterFor(pixel, pixelBytes, total)) {
  for (size_t i = 0; i < sizeof bytes_; ++i)
    bytes_[i] = pixel[i % pixelBytes];
}

}  // namespace vn
