// Dithering the long way: one accumulator per pixel per line and per channel.
#ifndef VNCORE_TESTS_SUPPORT_SLOW_DITHER_H
#define VNCORE_TESTS_SUPPORT_SLOW_DITHER_H

#include <array>
#include <map>

#include "color/threshold_matrices.h"
#include "tests/support/slow_color.h"

namespace vn::test {

// Weights of the pixels to come: by method, line downwards, and column from 3 to the left.
inline constexpr int kWeights[7][4][7] = {
    {},
    {{0, 0, 0, 0, 7}, {0, 0, 3, 5, 1}},
    {{0, 0, 0, 0, 8, 4}, {0, 2, 4, 8, 4, 2}, {0, 1, 2, 4, 2, 1}},
    {{0, 0, 0, 0, 8, 4}, {0, 2, 4, 8, 4, 2}},
    {{0, 0, 0, 0, 5, 3}, {0, 2, 4, 5, 4, 2}, {0, 0, 2, 3, 2}},
    {{0, 0, 0, 0, 0, 32},
     {12, 0, 26, 0, 30, 0, 16},
     {0, 12, 0, 26, 0, 12},
     {5, 0, 12, 0, 12, 0, 5}},
    {{0, 0, 0, 0, 7, 5}, {0, 3, 5, 7, 5, 3}, {0, 1, 3, 5, 3, 1}}};
inline constexpr int kDivisors[] = {0, 16, 42, 32, 32, 200, 48};

// How a run is to find its colours.
enum class Way { kCells, kFixed2, kFixed16, kFixed256 };

struct SlowRun {
  uint32_t method;
  Way way;
  int targetBits;
  Colors target;  // 256 entries, zero past the given ones
  bool matchTable = false;
  uint32_t tableCount = 0;
  std::vector<uint32_t> usable = {};        // indexes that cells may lead to, by position
  std::map<uint32_t, uint32_t> cells = {};  // position by cell, as far as answered
  std::vector<std::vector<std::array<long, 3>>> aimed = {};  // sums by line and column
  size_t line = 0, patternX = 0, patternY = 0;  // of the next line, and of the first pixel

  static uint32_t CellAt(SlowColor c) {
    return static_cast<uint32_t>(c.red / 8 * 1024 + c.green / 8 * 32 + c.blue / 8);
  }

  // The cells of a caller's table answer with a place in its own colours, which is taken for a
  // place among the usable ones.
  uint32_t FindByCell(SlowColor c) {
    const uint32_t cell = CellAt(c);
    if (!cells.count(cell)) {
      Colors colors;
      for (uint32_t i = 0; i < (matchTable ? tableCount : usable.size()); ++i)
        colors.push_back(target[matchTable ? i : usable[i]]);
      cells[cell] =
          SlowMatch(colors.data(), colors.size(), {c.red / 8 * 8, c.green / 8 * 8, c.blue / 8 * 8});
    }
    return cells[cell] < usable.size() ? usable[cells[cell]] : 0;
  }

  uint32_t Index(SlowColor c) {
    switch (way) {
      case Way::kFixed2:
        return SlowGray(c) >= 128;
      case Way::kFixed16:
        return FullColor(c.red >= 128, c.green >= 128, c.blue >= 128);
      case Way::kFixed256:
        return static_cast<uint32_t>(c.red / 32 * 32 + c.green / 32 * 4 + c.blue / 64);
      default:
        return FindByCell(c);
    }
  }

  uint32_t OrderedIndex(SlowColor c, int m) {
    if (way == Way::kFixed2) return m < SlowGray(c);
    if (way == Way::kFixed16) return FullColor(m < c.red, m < c.green, m < c.blue);
    int offset = m / 8 - 16;
    if (way == Way::kCells && targetBits == 1) offset = m - 128;
    if (way == Way::kCells && targetBits == 4) offset = m / 4 - 32;
    const auto moved = [&](int level) { return std::clamp(level + offset, 0, 255); };
    return Index({moved(c.red), moved(c.green), moved(c.blue)});
  }

  static uint32_t FullColor(bool red, bool green, bool blue) {
    return red || green || blue ? 8 + red + 2 * green + 4 * blue : 0;
  }

  std::vector<uint32_t> Line(const std::vector<SlowColor>& pixels) {
    std::vector<uint32_t> indexes;
    while (aimed.size() < line + 4)
      aimed.emplace_back(pixels.size());
    for (size_t x = 0; x < pixels.size(); ++x) {
      SlowColor c = pixels[x];
      if (method >= 7) {
        const auto& matrix = method == 7 ? OrderedMatrix : ClusteredMatrix;
        indexes.push_back(OrderedIndex(c, matrix[(patternY + line) % 8][(patternX + x) % 8]));
        continue;
      }
      if (method > 0) {
        const std::array<long, 3> sums = aimed[line][x];
        const auto corrected = [&](int level, long sum) {
          return std::clamp(level + static_cast<int>(sum / kDivisors[method]), 0, 255);
        };
        c = {corrected(c.red, sums[0]), corrected(c.green, sums[1]), corrected(c.blue, sums[2])};
      }
      indexes.push_back(Index(c));
      const SlowColor got = SlowEntry(target[indexes.back()]);
      for (size_t down = 0; down < 4; ++down) {
        for (size_t to = std::max<size_t>(x, 3); to < std::min(x + 7, pixels.size() + 3); ++to) {
          const int weight = kWeights[method][down][to - x];
          auto& sums = aimed[line + down][to - 3];
          sums[0] += weight * (c.red - got.red);
          sums[1] += weight * (c.green - got.green);
          sums[2] += weight * (c.blue - got.blue);
        }
      }
    }
    ++line;
    return indexes;
  }
};

}  // namespace vn::test

#endif
