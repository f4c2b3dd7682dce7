// The 32 row loops and the two expanders against slow models.
#include "device/dither_rows.h"

#include "device/expand_rows.h"
#include "kernel/guards.h"
#include "tests/support/pixels.h"
#include "tests/support/slow_dither.h"

namespace vn::test {
namespace {

constexpr uint32_t kDitherBits = MODE_ORDERED_DITHER | MODE_CLUSTERED_MATRIX;

struct Pair {
  int32_t source, destination;
};
constexpr Pair kPairs[] = {{4, 1},  {8, 1},  {16, 1}, {24, 1}, {32, 1}, {4, 4},  {8, 4},  {16, 4},
                           {24, 4}, {32, 4}, {1, 8},  {4, 8},  {8, 8},  {16, 8}, {24, 8}, {32, 8}};

std::vector<DiffusionCell> CellsOf(const SlowErrors& errors) {
  std::vector<DiffusionCell> cells;
  for (const auto& e : errors)
    cells.push_back({e[0], e[1], e[2]});
  return cells;
}

// Colours at and around the edges of the levels as well as any.
void FillRow(Bytes& row, Random& random) {
  random.Fill(row.data(), row.size());
  if (!random.Chance(3)) return;
  const uint8_t edges[] = {0, 1, 31, 32, 127, 128, 129, 223, 224, 254, 255};
  for (uint8_t& byte : row)
    byte = edges[random.Between(0, 10)];
}

// One member over a few rows, with every buffer as long as its pixels need.
void CheckMember(const Pair& pair, uint32_t mode, Random& random) {
  const DisplayModeScope scope(kDitherBits, mode);
  const DitherRow member = SelectDitherRow(pair.source, pair.destination);
  ASSERT_NE(member, nullptr);
  BitmapHandle bitmap{};
  bitmap.ColorOrder = static_cast<uint32_t>(random.Between(0, 2));
  const SlowDither slow{pair.source,
                        pair.destination,
                        bitmap.ColorOrder,
                        (mode & MODE_ORDERED_DITHER) != 0,
                        (mode & MODE_CLUSTERED_MATRIX) != 0,
                        RandomColors(random, pair.source <= 8 ? 1u << pair.source : 0)};
  const int32_t first = pair.source < 8 ? random.Between(0, 8 / pair.source - 1) : 0;
  const int32_t count = random.Between(1, 45);
  const auto pixels = static_cast<size_t>(first + count);
  const auto patternX = static_cast<uint32_t>(random.Next());
  // What any three rows above can have left, and no more.
  SlowErrors errors(static_cast<size_t>(count), {0, 0, 0});
  for (auto& cell : errors) {
    for (int& e : cell)
      e = random.Between(-9 * 255, 9 * 255);
  }
  std::vector<DiffusionCell> cells = CellsOf(errors);
  for (int32_t y = random.Between(-9, 9), rows = 3; rows-- > 0; --y) {
    Bytes source((pixels * static_cast<size_t>(pair.source) + 7) / 8);
    FillRow(source, random);
    Bytes row((static_cast<size_t>(count * pair.destination) + 7) / 8);
    random.Fill(row.data(), row.size());
    Bytes expected = row;
    const auto indexes = slow.Row(source, static_cast<size_t>(first), pixels, patternX, y, errors);
    for (size_t i = 0; i < indexes.size(); ++i) {
      SetPixelBits(&expected, i, pair.destination, indexes[i]);
    }
    member(row.data(), source.data(), &bitmap, first, first + count, patternX, y, cells.data(),
           slow.colors.data());
    ASSERT_EQ(row, expected) << pair.source << " to " << pair.destination << " bits, mode " << mode
                             << ", pixels " << first << " to " << first + count << ", phase "
                             << patternX << ", " << y;
    if (slow.ordered) continue;
    for (size_t i = 0; i < cells.size(); ++i) {
      ASSERT_EQ((std::array<int, 3>{cells[i].red, cells[i].green, cells[i].blue}), errors[i])
          << "cell " << i << " of " << count;
    }
  }
}

TEST(DitherRows, AllMembersMatchTheSlowModel) {
  Random random(11);
  for (const Pair& pair : kPairs) {
    for (const uint32_t mode :
         {0u, uint32_t{MODE_CLUSTERED_MATRIX}, uint32_t{MODE_ORDERED_DITHER}, kDitherBits}) {
      for (int round = 0; round < 60; ++round)
        CheckMember(pair, mode, random);
    }
  }
}

TEST(ExpandRows, WidenWithoutSwapping) {
  Random random(12);
  EXPECT_EQ(SelectExpandRow(24), nullptr);
  for (const int32_t bits : {16, 32}) {
    for (int32_t last = 0; last < 40; ++last) {
      const int32_t first = random.Between(0, std::min(last, 5));
      Bytes source(static_cast<size_t>(last * bits / 8));
      random.Fill(source.data(), source.size());
      Bytes row(static_cast<size_t>(3 * (last - first))), expected;
      for (int32_t x = first; x < last; ++x) {
        // ORDER_RGB: the first byte, or the low field, is read as red.
        const SlowColor c = SlowPixel(source, static_cast<size_t>(x), static_cast<uint32_t>(bits),
                                      ORDER_RGB, nullptr);
        for (const int v : {c.red, c.green, c.blue})
          expected.push_back(static_cast<uint8_t>(v));
      }
      SelectExpandRow(bits)(row.data(), source.data(), nullptr, first, last);
      EXPECT_EQ(row, expected) << bits << " bits, " << first << " to " << last;
    }
  }
}

}  // namespace
}  // namespace vn::test
