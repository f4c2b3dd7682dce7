// One pixel repeated over stretches of memory.
#ifndef VNCORE_COMPOSE_PIXEL_PATTERN_H
#define VNCORE_COMPOSE_PIXEL_PATTERN_H

#include <cstddef>
#include <cstdint>

namespace vn {

class PixelPattern {
 public:
  // `pixel` has 1, 2, 3 or 4 bytes.
  PixelPattern(const uint8_t* pixel, uint32_t pixelBytes);

  // Writes `count` bytes of the pattern, from the start of a pixel on.
  void Write(uint8_t* at, size_t count) const { write_(bytes_, at, count); }

 private:
  static constexpr size_t kVector = 32;
  static constexpr size_t kPeriod = 96;  // whole pixels of any size, and whole vectors
  using Writer = void (*)(const uint8_t* pattern, uint8_t* at, size_t count);

  static Writer Choose(bool oneByte);
  static void WriteByte(const uint8_t* pattern, uint8_t* at, size_t count);
  static void WritePeriods(const uint8_t* pattern, uint8_t* at, size_t count);
  static void WriteVectors(const uint8_t* pattern, uint8_t* at, size_t count);

  // One period and what a start anywhere in its first vector reads behind it.
  alignas(kVector) uint8_t bytes_[kPeriod + kVector];
  Writer write_;
};

}  // namespace vn

#endif
