// One pixel repeated over stretches of memory.
#ifndef VNCORE_COMPOSE_PIXEL_PATTERN_H
#define VNCORE_COMPOSE_PIXEL_PATTERN_H

#include "compose/pixel_pattern_writers.h"

namespace vn {

class PixelPattern {
 public:
  // `pixel` has 1, 2, 3 or 4 bytes.
  PixelPattern(const uint8_t* pixel, uint32_t pixelBytes);

  // Writes `count` bytes of the pattern, from the start of a pixel on.
  void Write(uint8_t* at, size_t count) const { write_(bytes_, at, count); }

 private:
  // One period and what a start anywhere in its first vector reads behind it.
  alignas(kPatternVector) uint8_t bytes_[kPatternPeriod + kPatternVector];
  PatternWriter write_;
};

}  // namespace vn

#endif
