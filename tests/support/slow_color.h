// Colour arithmetic the long way, as a model for tests: one pixel at a time, nothing shared with
// the library.
#ifndef VNCORE_TESTS_SUPPORT_SLOW_COLOR_H
#define VNCORE_TESTS_SUPPORT_SLOW_COLOR_H

#include <algorithm>
#include <cstdlib>

#include "tests/support/bitmaps.h"
#include "tests/support/pixels.h"

namespace vn::test {

struct SlowColor {
  int red, green, blue;
};

inline int SlowGray(SlowColor c) { return (2 * c.red + 5 * c.green + c.blue + 4) / 8; }

inline SlowColor SlowEntry(const RGBQUAD& e) { return {e.rgbRed, e.rgbGreen, e.rgbBlue}; }

// Blue above red, green below both, green above both.
inline int SlowShape(SlowColor c) {
  int shape = 0;
  if (c.blue > c.red) shape += 4;
  if (c.green < c.red && c.green < c.blue) shape += 2;
  if (c.green > c.red && c.green > c.blue) shape += 1;
  return shape;
}

inline uint32_t SlowMatch(const RGBQUAD* colors, uint32_t count, SlowColor c) {
  const auto isAll = [&](uint32_t i, int level) {
    const SlowColor e = SlowEntry(colors[i]);
    return e.red == level && e.green == level && e.blue == level;
  };
  if (count > 0 && c.red == 0 && c.green == 0 && c.blue == 0) {
    if (isAll(0, 0)) return 0;
    if (isAll(count - 1, 0)) return count - 1;
  }
  if (count > 0 && c.red == 255 && c.green == 255 && c.blue == 255) {
    if (isAll(count - 1, 255)) return count - 1;
    if (isAll(0, 255)) return 0;
  }
  uint32_t best = 0xFFFFFFFF;
  long bestDistance = 1L << 30;
  for (uint32_t i = 0; i < count; ++i) {
    const SlowColor e = SlowEntry(colors[i]);
    const long r = e.red - c.red, g = e.green - c.green, b = e.blue - c.blue;
    const long distance = r * r + g * g + b * b;
    if (distance < bestDistance || (distance == bestDistance && SlowShape(e) == SlowShape(c))) {
      bestDistance = distance;
      best = i;
    }
    if (bestDistance == 0) break;
  }
  return best;
}

// The colour of pixel `x`; `bits` 0 is one byte of gray.
inline SlowColor SlowPixel(const Bytes& row, size_t x, uint32_t bits, uint32_t order,
                           const RGBQUAD* colors) {
  if (bits == 0) return {row[x], row[x], row[x]};
  if (bits <= 8) return SlowEntry(colors[PixelBits(row, x, bits)]);
  int low, middle, high;
  if (bits == 16) {
    const int word = row[2 * x] + 256 * row[2 * x + 1];
    const auto widen = [](int field) { return field * 8 + field / 4; };
    low = widen(word % 32), middle = widen(word / 32 % 32), high = widen(word / 1024 % 32);
  } else {
    const size_t at = x * (bits / 8);
    low = row[at], middle = row[at + 1], high = row[at + 2];
  }
  return order == ORDER_BGR ? SlowColor{high, middle, low} : SlowColor{low, middle, high};
}

// Stores a colour at 16 bits or more, the unused bits 0.
inline void SetSlowPixel(Bytes& row, size_t x, uint32_t bits, uint32_t order, SlowColor c) {
  if (order == ORDER_RGB) std::swap(c.red, c.blue);
  if (bits == 16) {
    const int word = c.blue / 8 + c.green / 8 * 32 + c.red / 8 * 1024;
    row[2 * x] = static_cast<uint8_t>(word % 256);
    row[2 * x + 1] = static_cast<uint8_t>(word / 256);
    return;
  }
  const size_t at = x * (bits / 8);
  row[at] = static_cast<uint8_t>(c.blue);
  row[at + 1] = static_cast<uint8_t>(c.green);
  row[at + 2] = static_cast<uint8_t>(c.red);
  if (bits == 32) row[at + 3] = 0;
}

// A table with doubled colours and many equal distances: channels from few levels.
inline Colors CrowdedColors(Random& random, size_t count) {
  Colors colors(count);
  for (RGBQUAD& c : colors) {
    c.rgbRed = static_cast<uint8_t>(random.Between(0, 5) * 51);
    c.rgbGreen = static_cast<uint8_t>(random.Between(0, 5) * 51);
    c.rgbBlue = static_cast<uint8_t>(random.Between(0, 5) * 51);
  }
  return colors;
}

}  // namespace vn::test

#endif
