// One pixel repeated over stretches of memory.
#ifndef VNCORE_COMPOSE_PIXEL_PATTERN_H
#define VNCORE_COMPOSE_PIXEL_PATTERN_H

#include "compose/pixel_pattern_writers.h"

namespace vn {

class PixelPattern {
 public:
  // `pixel` has 1, 2, 3 or 4 bytes. `total`: roughly how many bytes will be written in all. More
  // than the caches hold would drive out what they hold, and be gone itself before it is read.
  PixelPattern(const uint8_t* pixel, uint32_t pixelBytes, uint64_t total);

  // Writes `count` bytes of the pattern, from the start of a pixel on.
  void Write(uint8_t* at, size_t count) const { write_(bytes_, at, count); }

 private:
  uint8_t bytes_[kPatternBytes];
  PatternWriter write_;
};

}  // namespace vn

#endif
