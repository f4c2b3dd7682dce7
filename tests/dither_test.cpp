// Line dithering against a model that keeps one accumulator per pixel per line and per channel.
#include <array>
#include <map>

#include "color/dither_state.h"
#include "color/threshold_matrices.h"
#include "tests/support/slow_color.h"

namespace vn::test {
namespace {

// Weights of the pixels to come: by method, line downwards, and column from 3 to the left.
constexpr int kWeights[7][4][7] = {{},
                                   {{0, 0, 0, 0, 7}, {0, 0, 3, 5, 1}},
                                   {{0, 0, 0, 0, 8, 4}, {0, 2, 4, 8, 4, 2}, {0, 1, 2, 4, 2, 1}},
                                   {{0, 0, 0, 0, 8, 4}, {0, 2, 4, 8, 4, 2}},
                                   {{0, 0, 0, 0, 5, 3}, {0, 2, 4, 5, 4, 2}, {0, 0, 2, 3, 2}},
                                   {{0, 0, 0, 0, 0, 32},
                                    {12, 0, 26, 0, 30, 0, 16},
                                    {0, 12, 0, 26, 0, 12},
                                    {5, 0, 12, 0, 12, 0, 5}},
                                   {{0, 0, 0, 0, 7, 5}, {0, 3, 5, 7, 5, 3}, {0, 1, 3, 5, 3, 1}}};
constexpr int kDivisors[] = {0, 16, 42, 32, 32, 200, 48};

// How a run is to find its colours.
enum class Way { kCells, kFixed2, kFixed16, kFixed256 };

struct SlowRun {
  uint32_t method;
  Way way;
  int targetBits;
  bool matchTable;
  uint32_t tableCount;
  Colors target;                            // 256 entries, zero past the given ones
  std::vector<uint32_t> usable;             // indexes that cells may lead to, by position
  std::map<uint32_t, uint32_t> cells = {};  // position by cell, as far as answered
  std::vector<std::vector<std::array<long, 3>>> aimed = {};  // sums by line and column
  size_t line = 0;

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
      cells[cell] = SlowMatch(colors.data(), static_cast<uint32_t>(colors.size()),
                              {c.red / 8 * 8, c.green / 8 * 8, c.blue / 8 * 8});
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
        indexes.push_back(OrderedIndex(c, matrix[line % 8][x % 8]));
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

// A target palette, and what a run should make of it.
struct Target {
  const char* name;
  Colors colors;  // empty: null is handed over
  uint32_t count;
  Way way;
  bool matchTable = false;
  int targetBits = 0;  // other than Vn_StartDithering would choose
};

SlowRun ModelOf(const Target& target, uint32_t method) {
  const int bits = target.count <= 2 ? 1 : target.count <= 16 ? 4 : 8;
  SlowRun run{method,
              target.way,
              target.targetBits ? target.targetBits : bits,
              target.matchTable,
              target.count,
              Colors(256),
              {}};
  const RGBQUAD* colors = target.colors.empty() ? Vn_IntGetFixedPalette(static_cast<uint32_t>(bits))
                                                : &target.colors[0];
  std::copy_n(colors, target.count, run.target.begin());
  if (target.way == Way::kCells) {
    for (uint32_t i = 0; i < target.count; ++i) {
      if (!(colors[i].rgbReserved & 3)) run.usable.push_back(i);
    }
    // Palette colours find themselves, the first in a cell.
    for (uint32_t i = 0; i < run.usable.size() && !target.matchTable; ++i) {
      run.cells.emplace(SlowRun::CellAt(SlowEntry(colors[run.usable[i]])), i);
    }
  }
  return run;
}

std::vector<Target> Targets() {
  Random random(11);
  const auto fixed = [](uint32_t bits, uint32_t count) {
    const RGBQUAD* colors = Vn_IntGetFixedPalette(bits);
    return Colors(colors, colors + count);
  };
  Colors reserved = RandomColors(random, 40);
  for (size_t i = 0; i < reserved.size(); i += 3) {
    reserved[i].rgbReserved = static_cast<BYTE>(random.Between(0, 7));
  }
  Colors flagged = fixed(4, 16);
  flagged[3].rgbReserved = 4;  // no reservation, but no longer the fixed palette
  return {{"fixed2", {}, 2, Way::kFixed2},
          {"fixed1", fixed(1, 1), 1, Way::kFixed2},
          {"fixed16", fixed(4, 16), 16, Way::kFixed16},
          {"fixed256", {}, 256, Way::kFixed256},
          {"fixed200", fixed(8, 200), 200, Way::kFixed256},
          {"fixed16at8", {}, 16, Way::kFixed16, false, 8},
          {"whiteblack", {fixed(1, 2)[1], fixed(1, 2)[0]}, 2, Way::kCells},
          {"custom2", RandomColors(random, 2), 2, Way::kCells},
          {"flagged16", flagged, 16, Way::kCells},
          {"custom13", RandomColors(random, 13), 13, Way::kCells},
          {"reserved40", reserved, 40, Way::kCells},
          {"crowded256", CrowdedColors(random, 256), 256, Way::kCells},
          {"table16", RandomColors(random, 16), 16, Way::kCells, true},
          {"table40", reserved, 40, Way::kCells, true},
          {"table256", RandomColors(random, 256), 256, Way::kCells, true}};
}

// Source rows that wander, with jumps: smooth enough for errors to build up.
Bytes SourceRow(Random& random, uint32_t bits, size_t bytes) {
  Bytes row(bytes);
  if (bits < 24 || random.Chance(3)) {
    random.Fill(row.data(), row.size());
    return row;
  }
  int level = random.Between(0, 255);
  for (uint8_t& byte : row) {
    level = random.Chance(40) ? random.Between(0, 255)
                              : std::clamp(level + random.Between(-6, 6), 0, 255);
    byte = static_cast<uint8_t>(level);
  }
  return row;
}

class EachMethod : public testing::TestWithParam<uint32_t> {};

// Dithers a few lines both ways; reused buffers show bits that ought to stay.
void Check(uint32_t method, const Target& target, uint32_t bits, uint32_t width, Random& random) {
  const Colors sourceColors = RandomColors(random, 256);
  const uint32_t order = random.Chance(2) ? ORDER_BGR : ORDER_RGB;
  Bitmap bitmap(width, 1, static_cast<int32_t>(bits), VIEW_BOTTOM_FIRST, order,
                sourceColors.data());
  bitmap->DitherMethod = method;
  SlowRun model = ModelOf(target, method);
  const RGBQUAD* colors = target.colors.empty() ? nullptr : target.colors.data();
  uint32_t* table =
      target.matchTable ? Vn_CreateUserMatchTable(target.colors.data(), target.count) : nullptr;
  if (table || target.targetBits) {
    ASSERT_EQ(StartDitherState(bitmap, colors, target.count, model.targetBits, table), OK);
  } else {
    ASSERT_EQ(Vn_StartDithering(bitmap, colors, target.count), OK);
  }
  bitmap->DitherMethod = 99;  // was read at the start, and only there

  const auto targetBits = static_cast<uint32_t>(model.targetBits);
  const size_t stride = (width * bits + 7) / 8, targetStride = (width * targetBits + 7) / 8;
  for (int line = 0; line < 10; ++line) {
    const Bytes source = SourceRow(random, bits, stride);
    std::vector<SlowColor> pixels;
    for (size_t x = 0; x < width; ++x) {
      pixels.push_back(SlowPixel(source, x, bits, order, sourceColors.data()));
    }
    const bool inPlace = targetBits <= bits && random.Chance(2);
    Bytes row = inPlace ? source : Bytes(targetStride);
    if (!inPlace) random.Fill(row.data(), row.size());
    Bytes expected = row;
    const std::vector<uint32_t> indexes = model.Line(pixels);
    for (size_t x = 0; x < width; ++x) {
      SetPixelBits(&expected, x, model.targetBits, indexes[x]);
    }
    ASSERT_EQ(Vn_DitherLine(bitmap, inPlace ? row.data() : source.data(), row.data()), OK);
    ASSERT_EQ(row, expected) << target.name << ", " << bits << " bits, order " << order << ", "
                             << width << " pixels, line " << line << (inPlace ? ", in place" : "");
  }
  EXPECT_EQ(Vn_StopDithering(bitmap), OK);
  EXPECT_EQ(bitmap->DitherState, nullptr);
  EXPECT_EQ(Vn_FreeUserMatchTable(table), OK);
}

TEST_P(EachMethod, EqualsOneAccumulatorPerPixelPerLine) {
  Random random(20 + GetParam());
  constexpr uint32_t kWidths[] = {1, 2, 3, 4, 7, 8, 21, 100, 255, 256, 258, 300};
  size_t next = 0;
  for (const Target& target : Targets()) {
    for (const int32_t bits : kDepths) {
      for (int round = 0; round < 2; ++round) {
        const uint32_t width = kWidths[next++ % std::size(kWidths)];
        ASSERT_NO_FATAL_FAILURE(
            Check(GetParam(), target, static_cast<uint32_t>(bits), width, random));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Dither, EachMethod, testing::Range(0u, 9u));

TEST(Dither, WithAllColoursReservedAnyIndexWillDo) {
  const Colors colors(4, RGBQUAD{10, 10, 10, 1});
  Bitmap bitmap(64, 1, 24);
  bitmap->DitherMethod = DITHER_STUCKI;
  ASSERT_EQ(Vn_StartDithering(bitmap, colors.data(), 4), OK);
  Bytes row(32);
  EXPECT_EQ(Vn_DitherLine(bitmap, Bytes(3 * 64, 10).data(), row.data()), OK);
  Vn_StopDithering(bitmap);
}

}  // namespace
}  // namespace vn::test
