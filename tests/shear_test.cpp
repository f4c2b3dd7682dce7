// Shear against a slow model: where each pixel of the picture as it is seen comes to lie.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/support/bitmaps.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

int64_t Fixed(int32_t hundredths) {
  return std::llround(16384 * std::sin(hundredths / 18000.0 * std::acos(-1.0)));
}

// How far line `k`, counted from the one that stays, moves of the most that any can.
struct SlowShear {
  int64_t sine, cosine;
  bool negative;
  explicit SlowShear(int32_t angle)
      : sine(Fixed(std::abs(angle))), cosine(Fixed(9000 - std::abs(angle))), negative(angle < 0) {}

  int64_t Most(size_t lines) const { return sine * static_cast<int64_t>(lines) / cosine; }
  size_t Moved(size_t k, size_t lines) const {
    const auto at = static_cast<int64_t>(k);
    const int64_t rest = at * (sine % cosine);
    const int64_t whole = at * (sine / cosine) + (rest ? (rest - 1) / cosine : 0);
    return static_cast<size_t>(negative ? Most(lines) - whole : whole);
  }
};

Pixels SlowSheared(const Pixels& seen, int32_t angle, bool horizontal, uint32_t fill) {
  const SlowShear shear(angle);
  const size_t height = seen.size(), width = seen[0].size();
  const auto wider = static_cast<size_t>(shear.Most(horizontal ? height : width));
  Pixels result(height + (horizontal ? 0 : wider),
                std::vector<uint32_t>(width + (horizontal ? wider : 0), fill));
  for (size_t y = 0; y < height; ++y) {
    for (size_t x = 0; x < width; ++x) {
      if (horizontal) {
        result[y][x + shear.Moved(height - 1 - y, height)] = seen[y][x];
      } else {
        result[y + wider - shear.Moved(width - 1 - x, width)][x] = seen[y][x];
      }
    }
  }
  return result;
}

void ShearAny(int32_t storage, int32_t rounds) {
  Random random(81 + static_cast<uint64_t>(storage));
  for (int32_t i = 0; i < rounds; ++i) {
    const int32_t bits = kDepths[i % 6], most = i % 4 ? 40 : 150;
    const int32_t angles[] = {0, 4500, -4500, 1, random.Between(-4500, 4500)};
    const int32_t angle = random.OneOf(angles), width = random.Between(1, most);
    const bool horizontal = random.Chance(2), white = random.Chance(2);
    RandomBitmap bitmap(random, width, random.Between(1, most), bits, storage);
    SCOPED_TRACE(
        Told(bits, "bits,", width, "x", bitmap->Height, "by", angle, horizontal ? "" : "vertical"));
    const uint32_t ones = bits == 16 ? 0xFF7F : bits == 32 ? 0xFFFFFF00 : (1ull << bits) - 1;
    const Pixels expected = SlowSheared(SeenPixels(bitmap), angle, horizontal, white ? ones : 0);
    ASSERT_EQ(Vn_ShearBitmap(bitmap, angle, horizontal, white ? RGB(255, 255, 255) : 0), OK);
    ASSERT_EQ(SeenPixels(bitmap), expected);
    ASSERT_TRUE(bits > 8 || (bitmap->Flags & FLAG_PALETTE_INDEXES));
  }
}

TEST(ShearBitmap, PutsEveryPixelAtItsShift) { ShearAny(STORAGE_AUTO, 600); }

HEADLESS_TEST(ShearBitmap, FromFilesAndToThem) {
  const Win32sScope scope;
  ShearAny(STORAGE_MEMORY, 60);
  Headless_SetLargestBlock(4000);  // larger results go to files, and blocks to single rows
  ShearAny(STORAGE_DISK, 120);
  Headless_SetLargestBlock(0);
}

TEST(ShearBitmap, DropsRegionAndResolutionsButNotThePalette) {
  Random random(82);
  const Colors colors = RandomColors(random, 16);
  Bitmap bitmap(9, 9, 4, VIEW_TOP_FIRST, 0, colors.data());
  Select(bitmap, {1, 1, 5, 5});
  bitmap->XResolution = 301;
  ASSERT_EQ(Vn_ShearBitmap(bitmap, 0, 1, 0), OK);
  EXPECT_EQ(bitmap->Region, nullptr);
  EXPECT_EQ(bitmap->XResolution, 150);
  EXPECT_EQ(Vn_CompareHandleToPalette(bitmap->Palette, colors.data(), 16), 1);
  EXPECT_EQ(Vn_GetPaletteSize(bitmap->Palette), 16u);
}

TEST(ShearBitmap, RefusesAnglesAndLeavesWhatWouldBeTooLong) {
  Bitmap bitmap(200000, 2, 1);
  EXPECT_EQ(Vn_ShearBitmap(nullptr, 0, 1, 0), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_ShearBitmap(bitmap, 4501, 1, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_ShearBitmap(bitmap, INT32_MIN, 1, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_ShearBitmap(bitmap, 4500, 1, 0), OK);
  EXPECT_EQ(bitmap->Width, 200002);
  Bitmap wide(32768, 2, 8);
  for (const int32_t angle : {4500, -4500}) {
    EXPECT_EQ(Vn_ShearBitmap(wide, angle, 1, 0), OK);
    EXPECT_EQ(wide->Width, 32768);
  }
}

TEST(ShearBitmap, TellsProgressOfAllItsStages) {
  {
    Bitmap bitmap(5, 30, 8);
    const StatusLog log;
    ASSERT_EQ(Vn_ShearBitmap(bitmap, 2000, 1, 0), OK);
    EXPECT_EQ(log.percents(), ExpectedPercents(30));
  }
  // A quarter turn, a mirroring, rows from 25 to 75, the mirroring of the result, the turn back.
  Bitmap bitmap(5, 2, 8);
  const StatusLog log;
  ASSERT_EQ(Vn_ShearBitmap(bitmap, -2000, 0, 0), OK);
  const std::vector<int32_t> expected = {0,  10, 20, 20, 25, 35, 45, 55, 65,
                                         75, 80, 80, 84, 88, 92, 96, 100};
  EXPECT_EQ(log.percents(), expected);
}

TEST(ShearBitmap, StoppedBetweenRowsIsReplacedAndBeforeThemKept) {
  Random random(83);
  for (const int32_t angle : {2000, -2000}) {
    RandomBitmap bitmap(random, 6, 10, 8);
    const Pixels before = SeenPixels(bitmap);
    if (angle < 0) {
      for (const size_t stopAt : {size_t{1}, size_t{2}}) {
        const StatusLog log(stopAt, -99);
        EXPECT_EQ(Vn_ShearBitmap(bitmap, angle, 1, 0), -99);
        EXPECT_EQ(SeenPixels(bitmap), before);
      }
    }
    Pixels expected = SlowSheared(before, angle, true, 0);
    for (size_t y = 0; y < 7; ++y)
      std::fill(expected[y].begin(), expected[y].end(), 0);
    // Three rows are moved; a slant to the left forgets the stop.
    const StatusLog log(angle < 0 ? 5 : 4, -99);
    EXPECT_EQ(Vn_ShearBitmap(bitmap, angle, 1, 0), angle < 0 ? static_cast<VnStatus>(OK) : -99);
    EXPECT_EQ(SeenPixels(bitmap), expected);
  }
}

}  // namespace
}  // namespace vn::test
