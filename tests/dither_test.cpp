// Line dithering against a model that keeps one accumulator per pixel per line and per channel.
#include "color/dither_state.h"
#include "tests/support/slow_dither.h"

namespace vn::test {
namespace {

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
  SlowRun run{method,      target.way,        target.targetBits ? target.targetBits : bits,
              Colors(256), target.matchTable, target.count};
  const RGBQUAD* colors = target.colors.empty() ? Vn_IntGetFixedPalette(bits) : &target.colors[0];
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
  Bitmap bitmap(width, 1, bits, VIEW_BOTTOM_FIRST, order, sourceColors.data());
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
        ASSERT_NO_FATAL_FAILURE(Check(GetParam(), target, bits, width, random));
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
