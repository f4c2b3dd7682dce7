// Pixels as numbers in a string of bits: a slow model of rows that knows nothing of the library's
// readers and writers.
#ifndef VNCORE_TESTS_SUPPORT_PIXELS_H
#define VNCORE_TESTS_SUPPORT_PIXELS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vn::test {

// The `bits` bits of pixel `x`, first bit on top; the bits of a byte run from its high end.
inline uint32_t PixelBits(const std::vector<uint8_t>& row, size_t x, int32_t bits) {
  uint32_t value = 0;
  for (size_t bit = x * static_cast<size_t>(bits), n = 0; n < static_cast<size_t>(bits);
       ++bit, ++n) {
    value = value << 1 | (row.at(bit / 8) >> (7 - bit % 8) & 1);
  }
  return value;
}

inline void SetPixelBits(std::vector<uint8_t>* row, size_t x, int32_t bits, uint32_t value) {
  const auto count = static_cast<size_t>(bits);
  for (size_t n = 0; n < count; ++n) {
    const size_t bit = x * count + n;
    const auto mask = static_cast<uint8_t>(0x80u >> bit % 8);
    uint8_t& byte = row->at(bit / 8);
    byte = static_cast<uint8_t>(value >> (count - 1 - n) & 1 ? byte | mask : byte & ~mask);
  }
}

// All pixels of a row.
inline std::vector<uint32_t> RowPixels(const std::vector<uint8_t>& row, size_t width,
                                       int32_t bits) {
  std::vector<uint32_t> pixels(width);
  for (size_t x = 0; x < width; ++x)
    pixels[x] = PixelBits(row, x, bits);
  return pixels;
}

}  // namespace vn::test

#endif
