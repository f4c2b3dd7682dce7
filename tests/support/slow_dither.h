// The row dithering of the display path the long way: every pixel by itself, errors in two full
// rows, levels looked up in the palettes.
#ifndef VNCORE_TESTS_SUPPORT_SLOW_DITHER_H
#define VNCORE_TESTS_SUPPORT_SLOW_DITHER_H

#include <array>

#include "color/threshold_matrices.h"
#include "tests/support/slow_color.h"

namespace vn::test {

// Errors of one row of pixels, in sixteenths: red, green, blue.
using SlowErrors = std::vector<std::array<int, 3>>;

struct SlowDither {
  int sourceBits, destinationBits;
  uint32_t order;
  bool ordered, clustered;
  Colors colors;  // of up to 8 bits

  SlowColor Read(const Bytes& row, size_t x) const {
    return SlowPixel(row, x, static_cast<uint32_t>(sourceBits), order, colors.data());
  }

  uint32_t Index(SlowColor c) const {
    if (destinationBits == 1) return SlowGray(c) > 127 ? 1 : 0;
    if (destinationBits == 8) {
      return static_cast<uint32_t>(c.red / 32 * 32 + c.green / 32 * 4 + c.blue / 64);
    }
    const int index = (c.red >= 128 ? 1 : 0) + (c.green >= 128 ? 2 : 0) + (c.blue >= 128 ? 4 : 0);
    return static_cast<uint32_t>(index ? index + 8 : 0);
  }

  uint32_t OrderedIndex(SlowColor c, uint32_t x, uint32_t y) const {
    const bool dots = destinationBits == 1 && clustered;
    const int t = dots ? ClusteredMatrix[y % 8][x % 8] : OrderedMatrix[y % 8][x % 8];
    if (destinationBits == 1) return t < SlowGray(c) ? 1 : 0;
    if (destinationBits == 4) {
      const int index = (t < c.red ? 1 : 0) + (t < c.green ? 2 : 0) + (t < c.blue ? 4 : 0);
      return static_cast<uint32_t>(index ? index + 8 : 0);
    }
    const auto moved = [&](int v) { return std::clamp(v + t / 8 - 16, 0, 255); };
    return Index({moved(c.red), moved(c.green), moved(c.blue)});
  }

  // The indexes of pixels `first` to `last` - 1. `errors` holds what the rows before left for this
  // one, and then what this one leaves.
  std::vector<uint32_t> Row(const Bytes& row, size_t first, size_t last, uint32_t patternX,
                            int patternY, SlowErrors& errors) const {
    std::vector<uint32_t> result;
    SlowErrors next(errors.size(), {0, 0, 0});
    const size_t count = last > first ? last - first : 0;
    if (!count) return result;
    const RGBQUAD* palette = Vn_IntGetFixedPalette(static_cast<uint32_t>(destinationBits));
    for (size_t i = 0; i < count; ++i) {
      SlowColor c = Read(row, first + i);
      if (ordered) {
        result.push_back(
            OrderedIndex(c, patternX + static_cast<uint32_t>(i), static_cast<uint32_t>(patternY)));
        continue;
      }
      c = {std::clamp(c.red + errors[i][0] / 16, 0, 255),
           std::clamp(c.green + errors[i][1] / 16, 0, 255),
           std::clamp(c.blue + errors[i][2] / 16, 0, 255)};
      result.push_back(Index(c));
      const SlowColor shown = SlowEntry(palette[result.back()]);
      const int error[3] = {c.red - shown.red, c.green - shown.green, c.blue - shown.blue};
      for (size_t k = 0; k < 3; ++k) {
        if (i + 1 < count) errors[i + 1][k] += 7 * error[k];
        if (i > 0) next[i - 1][k] += 3 * error[k];
        next[i][k] += 5 * error[k];
        if (i + 1 < count) next[i + 1][k] += error[k];
      }
    }
    if (!ordered) errors = next;
    return result;
  }
};

}  // namespace vn::test

#endif
