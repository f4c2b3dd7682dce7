// The nearest-colour search against a walk of the table, entry by entry.
#include "color/color_match.h"

#include <algorithm>

#include "color/color_search.h"
#include "tests/support/headless_control.h"
#include "tests/support/slow_color.h"

namespace vn::test {
namespace {

uint32_t Match(const Colors& colors, SlowColor c) {
  return ColorMatch(colors.data(), static_cast<uint32_t>(colors.size()),
                    static_cast<uint32_t>(c.red), static_cast<uint32_t>(c.green),
                    static_cast<uint32_t>(c.blue));
}

SlowColor RandomColor(Random& random, bool crowded) {
  const auto channel = [&] {
    return crowded ? random.Between(0, 10) * 51 / 2 : random.Between(0, 255);
  };
  return {channel(), channel(), channel()};
}

// Tables of every size around the block sizes of the search, with and without ties.
template <class Use>
void ForTables(Random& random, Use&& use) {
  for (const size_t size : {1, 2, 3, 4, 5, 7, 8, 15, 16, 17, 63, 100, 200, 255, 256}) {
    for (const bool crowded : {false, true}) {
      use(crowded ? CrowdedColors(random, size) : RandomColors(random, size), crowded);
    }
  }
}

TEST(ColorMatch, EqualsTheWalkOfTheTable) {
  Random random(1);
  const auto check = [&](Colors colors, bool crowded) {
    for (RGBQUAD& c : colors)
      c.rgbReserved = static_cast<BYTE>(random.Next());
    for (int i = 0; i < 300; ++i) {
      const SlowColor c = RandomColor(random, crowded);
      ASSERT_EQ(Match(colors, c), SlowMatch(colors.data(), static_cast<uint32_t>(colors.size()), c))
          << colors.size() << " entries, colour " << c.red << ' ' << c.green << ' ' << c.blue;
    }
  };
  ForTables(random, check);
  // Larger tables go by in several blocks.
  for (const size_t size : {257, 300, 512, 700})
    check(CrowdedColors(random, size), true);
}

TEST(ColorMatch, BlackAndWhiteLookAtTheEndsFirst) {
  const RGBQUAD black{0, 0, 0, 4}, white{255, 255, 255, 2}, gray{9, 9, 9, 0};
  EXPECT_EQ(Match({black, gray, black}, {0, 0, 0}), 0u);
  EXPECT_EQ(Match({gray, black, black}, {0, 0, 0}), 2u);
  EXPECT_EQ(Match({white, gray, white}, {255, 255, 255}), 2u);
  EXPECT_EQ(Match({white, white, gray}, {255, 255, 255}), 0u);
}

TEST(ColorMatch, EmptyTableHasNoAnswer) {
  const RGBQUAD one{1, 2, 3, 0};
  EXPECT_EQ(ColorMatch(&one, 0, 5, 5, 0), 0xFFFFFFFF);
  EXPECT_EQ(ColorMatch(&one, 0, 0, 0, 0), 0xFFFFFFFF);
}

TEST(ColorSearch, AnswersAsColorMatchInAnyOrderOfColours) {
  Random random(2);
  ForTables(random, [&](const Colors& colors, bool crowded) {
    for (const size_t expected : {1, 100, 100000}) {
      ColorSearch search(colors.data(), static_cast<uint32_t>(colors.size()), expected);
      std::vector<SlowColor> asked;
      for (int i = 0; i < 200; ++i) {
        // New colours, repeated ones, and neighbours of the ones before.
        SlowColor c = RandomColor(random, crowded);
        if (!asked.empty() && random.Chance(2)) {
          c = asked[static_cast<size_t>(random.Between(0, static_cast<int>(asked.size()) - 1))];
          if (random.Chance(2)) c.green = std::clamp(c.green + random.Between(-3, 3), 0, 255);
        }
        asked.push_back(c);
        ASSERT_EQ(search.Find({c.red, c.green, c.blue}), Match(colors, c));
      }
    }
  });
}

TEST(PairSearch, AnswersAsColorMatchOnBothSidesOfThePlane) {
  Random random(7);
  for (int table = 0; table < 60; ++table) {
    const Colors colors = CrowdedColors(random, 2);
    const PairSearch search(colors.data());
    for (int i = 0; i < 200; ++i) {
      const SlowColor c = RandomColor(random, random.Chance(2));
      ASSERT_EQ(search.Find({c.red, c.green, c.blue}), Match(colors, c));
    }
  }
}

// What the maps hold shows in the conversion of rows.
TEST(BuildColorMap, TellsWhetherTheMapIsTheIdentity) {
  Random random(3);
  const Colors colors = CrowdedColors(random, 256);
  uint8_t map[256] = {77};
  EXPECT_EQ(BuildColorMap(nullptr, 16, nullptr, 16, map), 1);
  EXPECT_EQ(map[0], 77);
  // Equal tables are carried over, doubles and all; one that is shorter is another one.
  EXPECT_EQ(BuildColorMap(colors.data(), 256, colors.data(), 256, map), 1);
  EXPECT_EQ(map[255], 255);
  EXPECT_EQ(BuildColorMap(colors.data(), 16, colors.data(), 15, map), 0);
  EXPECT_EQ(map[15], SlowMatch(colors.data(), 15, SlowEntry(colors[15])));
}

TEST(MatchTable, HoldsTheNearestEntryOfEachCellsLowCorner) {
  Random random(4);
  const Colors colors = CrowdedColors(random, 40);
  uint32_t* table = Vn_CreateUserMatchTable(colors.data(), 40);
  ASSERT_NE(table, nullptr);
  for (int cell = 0; cell < 32768; ++cell) {
    const SlowColor corner{cell / 1024 * 8, cell / 32 % 32 * 8, cell % 32 * 8};
    ASSERT_EQ(table[cell], 1 + SlowMatch(colors.data(), 40, corner)) << cell;
  }
  EXPECT_EQ(Vn_SetUserMatchTable(table), nullptr);
  EXPECT_EQ(Vn_SetUserMatchTable(nullptr), table);
  EXPECT_EQ(Vn_FreeUserMatchTable(table), OK);
  EXPECT_EQ(Vn_FreeUserMatchTable(nullptr), OK);
}

HEADLESS_TEST(MatchTable, IsNullWithoutMemory) {
  Headless_FailNth(HEADLESS_MEMORY, 1);
  EXPECT_EQ(Vn_CreateUserMatchTable(Vn_IntGetFixedPalette(1), 2), nullptr);
  Headless_FailNth(HEADLESS_MEMORY, 0);
}

}  // namespace
}  // namespace vn::test
