// The region that follows its picture.
#include "region/region_motion.h"

#include <gtest/gtest.h>

#include <cstring>

#include "geometry/fixed_sine.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

// A record with a random region.
class Followed : public Plain {
 public:
  Followed(Random& random, int32_t width, int32_t height, uint32_t origin = VIEW_BOTTOM_FIRST)
      : Plain(width, height, origin) {
    RegionUnion shape;
    for (int32_t i = random.Between(1, 7); i > 0; --i)
      shape.Add(RandomRect(random, -6, 46));
    Select(Region(shape.Finish()).get());
  }
  explicit Followed(Random& random)
      : Followed(random, random.Between(1, 40), random.Between(1, 40)) {}
};

std::string Bounds(BitmapHandle* bitmap) { return Text(bitmap->Region->header.rcBound); }

bool Same(const std::vector<RECT>& a, const std::vector<RECT>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(RECT)) == 0);
}

// What Vn_GetBitmapRgnHandle gives has the pixels of the list: no cached object has outlived it.
void ExpectObjectFits(Plain& bitmap) {
  EXPECT_EQ(PixelSet::Of(-50, 150, RectsOf(bitmap.Get().get())),
            PixelSet::Of(-50, 150, bitmap.Rects()));
}

TEST(RegionMotion, FlipAndReverseMirrorThePixels) {
  Random random(60);
  for (int32_t round = 0; round < 40; ++round) {
    Followed bitmap(random);
    bitmap.Get();
    const std::vector<RECT> before = bitmap.Rects();
    const std::string bounds = Bounds(bitmap);
    const PixelSet pixels = PixelSet::Of(0, 48, before);
    const bool flip = round % 2;
    const auto turn = [&] { return flip ? FlipRegion(bitmap) : ReverseRegion(bitmap); };
    ASSERT_EQ(turn(), OK);
    for (int32_t y = 0; y < bitmap->Height; ++y) {
      for (int32_t x = 0; x < bitmap->Width; ++x) {
        const bool from =
            flip ? pixels.At(x, bitmap->Height - 1 - y) : pixels.At(bitmap->Width - 1 - x, y);
        ASSERT_EQ(Vn_IsPtInBitmapRgn(bitmap, y, x) != 0, from);
      }
    }
    ExpectObjectFits(bitmap);
    ASSERT_EQ(turn(), OK);
    EXPECT_TRUE(Same(bitmap.Rects(), before));
    EXPECT_EQ(Bounds(bitmap), bounds);
  }
}

TEST(RegionMotion, ScaleTruncatesAndDropsWhatVanishes) {
  Random random(61);
  for (int32_t round = 0; round < 60; ++round) {
    Followed bitmap(random);
    bitmap.Get();
    const int32_t width = random.Between(0, 90), height = random.Between(0, 90);
    const auto scale = [&](RECT rect) -> RECT {
      return {rect.left * width / bitmap->Width, rect.top * height / bitmap->Height,
              rect.right * width / bitmap->Width, rect.bottom * height / bitmap->Height};
    };
    const auto empty = [](const RECT& r) { return r.left >= r.right || r.top >= r.bottom; };
    std::vector<RECT> expected;
    for (const RECT& rect : bitmap.Rects()) {
      if (!empty(scale(rect))) expected.push_back(scale(rect));
    }
    const RECT bounds = scale(bitmap->Region->header.rcBound);
    RegionRecord* const block = bitmap->Region;
    ASSERT_EQ(ScaleRegion(bitmap, width, height), OK);
    EXPECT_EQ(bitmap->Region, block);
    EXPECT_TRUE(Same(bitmap.Rects(), expected));
    EXPECT_EQ(bitmap->Region->header.nRgnSize, 16 * expected.size());
    EXPECT_EQ(Bounds(bitmap), empty(bounds) ? "0,0,0,0" : Text(bounds));
    ExpectObjectFits(bitmap);
  }
}

TEST(RegionMotion, CopyMovesAndCuts) {
  Random random(62);
  for (int32_t round = 0; round < 80; ++round) {
    Followed source(random);
    if (round % 2) source.Get();
    Plain copy(random);
    const int32_t dx = round % 3 ? random.Between(-9, 9) : 0;
    const int32_t dy = round % 3 ? random.Between(-9, 9) : 0;
    ASSERT_EQ(CopyRegion(copy, source, dx, dy), OK);
    ASSERT_NE(copy->Region, source->Region);
    for (int32_t y = 0; y < copy->Height; ++y) {
      for (int32_t x = 0; x < copy->Width; ++x) {
        ASSERT_EQ(Vn_IsPtInBitmapRgn(copy, y, x), Vn_IsPtInBitmapRgn(source, y - dy, x - dx));
      }
    }
    for (const RECT& rect : copy.Rects()) {
      EXPECT_TRUE(rect.left >= 0 && rect.top >= 0 && rect.right <= copy->Width &&
                  rect.bottom <= copy->Height);
    }
    // Each has an object of its own, or none.
    if (copy->Region->CachedRegion) {
      EXPECT_NE(copy->Region->CachedRegion, source->Region->CachedRegion);
      EXPECT_TRUE(dx == 0 && dy == 0);
    }
    ExpectObjectFits(copy);
  }
}

// The walk over the new pixels with a question for each, and a region combined of what is found.
HRGN SlowRotation(BitmapHandle* bitmap, int32_t oldWidth, int32_t oldHeight, int32_t angle) {
  int32_t turn = -angle % 36000;
  if (turn < 0) turn += 36000;
  if (bitmap->ViewOrigin == VIEW_BOTTOM_FIRST) turn = 36000 - turn;
  const int32_t c = FixedCos(turn), s = FixedSin(turn);
  const int32_t cx = bitmap->Width / 2, cy = bitmap->Height / 2;
  const auto carry = [](int32_t* whole, int32_t* fraction, int32_t step) {
    *fraction += step;
    if (*fraction >= 16384) *fraction -= 16384, ++*whole;
    if (*fraction < -16383) *fraction += 16384, --*whole;
  };
  const int32_t p = s * cy - c * cx, q = -(s * cx + c * cy);
  int32_t startColumn = p / 16384 + oldWidth / 2, columnRest = p % 16384;
  int32_t startRow = q / 16384 + oldHeight / 2, rowRest = q % 16384;
  RegionUnion pixels;
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    int32_t column = startColumn, row = startRow, xRest = columnRest, yRest = rowRest;
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      if (Vn_IsPtInBitmapRgn(bitmap, row, column)) pixels.Add({x, y, x + 1, y + 1});
      carry(&column, &xRest, c);
      carry(&row, &yRest, s);
    }
    carry(&startColumn, &columnRest, -s);
    carry(&startRow, &rowRest, c);
  }
  return pixels.Finish();
}

TEST(RegionMotion, RotationAsksEveryPixel) {
  Random random(63);
  const int32_t right[] = {0, 9000, 18000, 27000, 36000, -9000, 4500};
  for (int32_t round = 0; round < 50; ++round) {
    const int32_t width = random.Between(1, 40), height = random.Between(1, 40);
    Followed bitmap(random, width, height, random.Between(0, 1) * 2u);
    const int32_t angle = round < 14 ? right[round % 7] : random.Between(-72000, 72000);
    SCOPED_TRACE(testing::Message() << "round " << round << ", angle " << angle);
    if (round % 5 == 0) FlipRegion(bitmap);
    bitmap->Width = random.Between(1, 60);
    bitmap->Height = random.Between(1, 60);
    const Region expected(SlowRotation(bitmap, width, height, angle));
    ASSERT_EQ(RotateRegion(bitmap, width, height, angle), OK);
    Plain slow(bitmap->Width, bitmap->Height);
    slow.Select(expected.get());
    // The same list, too, on systems that list their regions alike.
    EXPECT_EQ(PixelSet::Of(0, 60, bitmap.Rects()), PixelSet::Of(0, 60, slow.Rects()));
    EXPECT_TRUE(Same(bitmap.Rects(), slow.Rects()));
    EXPECT_EQ(Bounds(bitmap), Bounds(slow));
  }
}

HEADLESS_TEST(RegionMotion, FailuresHaveTheirCodeAndLeakNothing) {
  WalkFailures(HEADLESS_MEMORY, [](FailureRound& round) {
    Random random(64);
    Followed source(random, 30, 30);
    Plain copy(20, 20);
    const VnStatus status = round.Run([&] { return CopyRegion(copy, source, 3, 3); });
    EXPECT_TRUE(status == OK || (round.Failed() && status == ERR_NO_MEMORY));
    EXPECT_TRUE(status == OK || !copy->Region);
  });
  WalkFailures(HEADLESS_OBJECT, [](FailureRound& round) {
    Random random(64);
    Followed source(random, 30, 30);
    Plain copy(30, 30);
    source.Get();
    EXPECT_EQ(round.Run([&] { return CopyRegion(copy, source, 0, 0); }), OK);
    EXPECT_EQ(copy->Region->CachedRegion == nullptr, round.Failed());
  });
  WalkFailures(
      HEADLESS_MEMORY,
      [](FailureRound& round) {
        Plain bitmap(64, 64);
        RegionUnion board;  // enough runs for the list to grow
        for (int32_t y = 0; y < 64; ++y) {
          for (int32_t x = y % 2; x < 64; x += 2)
            board.Add({x, y, x + 1, y + 1});
        }
        bitmap.Select(Region(board.Finish()).get());
        const std::vector<RECT> before = bitmap.Rects();
        const VnStatus status = round.Run([&] { return RotateRegion(bitmap, 64, 64, 100); });
        EXPECT_TRUE(status == OK || (round.Failed() && status == ERR_NO_MEMORY));
        EXPECT_TRUE(status == OK || Same(bitmap.Rects(), before));
      },
      2);
}

}  // namespace
}  // namespace vn::test
