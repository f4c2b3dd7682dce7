// The region that follows its picture.
#include "region/region_motion.h"

#include <gtest/gtest.h>

#include <cstring>

#include "geometry/fixed_sine.h"
#include "kernel/platform_objects.h"
#include "region/region_record.h"
#include "region/region_union.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

using Region = OwnedObject<HRGN>;

// A record without pixels, with a random region.
class Followed {
 public:
  Followed(int32_t width, int32_t height, uint32_t origin = VIEW_BOTTOM_FIRST) {
    handle_.Width = width;
    handle_.Height = height;
    handle_.ViewOrigin = origin;
  }
  Followed(Random& random, int32_t width, int32_t height, uint32_t origin = VIEW_BOTTOM_FIRST)
      : Followed(width, height, origin) {
    RegionUnion shape;
    for (int32_t i = random.Between(1, 7); i > 0; --i)
      shape.Add(RandomRect(random, -6, 46));
    Vn_SetBitmapRgnHandle(&handle_, nullptr, Region(shape.Finish()).get(), 1);
  }
  Followed(const Followed&) = delete;
  Followed& operator=(const Followed&) = delete;
  ~Followed() { Vn_FreeBitmapRgn(&handle_); }
  BitmapHandle* operator->() { return &handle_; }
  operator BitmapHandle*() { return &handle_; }

  std::vector<RECT> Rects() { return {handle_.Region->begin(), handle_.Region->end()}; }
  RECT& Bounds() { return handle_.Region->header.rcBound; }
  void FillCache() {
    HRGN got = nullptr;
    EXPECT_EQ(Vn_GetBitmapRgnHandle(&handle_, nullptr, &got), OK);
    DeleteObject(got);
  }

 private:
  BitmapHandle handle_{};
};

bool Same(const std::vector<RECT>& a, const std::vector<RECT>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(RECT)) == 0);
}

// What Vn_GetBitmapRgnHandle gives has the pixels of the list: no cached object has outlived it.
void ExpectObjectFits(Followed& bitmap) {
  HRGN got = nullptr;
  ASSERT_EQ(Vn_GetBitmapRgnHandle(bitmap, nullptr, &got), OK);
  EXPECT_EQ(PixelSet::Of(-50, 150, RectsOf(got)), PixelSet::Of(-50, 150, bitmap.Rects()));
  DeleteObject(got);
}

TEST(RegionMotion, FlipAndReverseMirrorThePixels) {
  Random random(60);
  for (int32_t round = 0; round < 40; ++round) {
    Followed bitmap(random, random.Between(1, 40), random.Between(1, 40));
    bitmap.FillCache();
    const std::vector<RECT> before = bitmap.Rects();
    const std::string bounds = Text(bitmap.Bounds());
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
    EXPECT_EQ(Text(bitmap.Bounds()), bounds);
  }
}

TEST(RegionMotion, ScaleTruncatesAndDropsWhatVanishes) {
  Random random(61);
  for (int32_t round = 0; round < 60; ++round) {
    Followed bitmap(random, random.Between(1, 40), random.Between(1, 40));
    bitmap.FillCache();
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
    const RECT bounds = scale(bitmap.Bounds());
    RegionRecord* const block = bitmap->Region;
    ASSERT_EQ(ScaleRegion(bitmap, width, height), OK);
    EXPECT_EQ(bitmap->Region, block);
    EXPECT_TRUE(Same(bitmap.Rects(), expected));
    EXPECT_EQ(bitmap->Region->header.nRgnSize, 16 * expected.size());
    EXPECT_EQ(Text(bitmap.Bounds()), empty(bounds) ? "0,0,0,0" : Text(bounds));
    ExpectObjectFits(bitmap);
  }
}

TEST(RegionMotion, CopyMovesAndCuts) {
  Random random(62);
  for (int32_t round = 0; round < 80; ++round) {
    Followed source(random, random.Between(1, 40), random.Between(1, 40));
    if (round % 2) source.FillCache();
    Followed copy(random.Between(1, 40), random.Between(1, 40));
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
      EXPECT_EQ(dx, 0);
      EXPECT_EQ(dy, 0);
    }
    ExpectObjectFits(copy);
  }
  Followed whole(9, 9), copy(9, 9);
  EXPECT_EQ(CopyRegion(copy, whole, 1, 1), OK);
  EXPECT_EQ(copy->Region, nullptr);
  EXPECT_EQ(CopyRegion(nullptr, whole, 0, 0), ERR_INVALID_PARAMETER);
  EXPECT_EQ(CopyRegion(copy, nullptr, 0, 0), ERR_INVALID_PARAMETER);
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
    Followed slow(bitmap->Width, bitmap->Height);
    Vn_SetBitmapRgnHandle(slow, nullptr, expected.get(), 1);
    // The same list, too, on systems that list their regions alike.
    EXPECT_EQ(PixelSet::Of(0, 60, bitmap.Rects()), PixelSet::Of(0, 60, slow.Rects()));
    EXPECT_TRUE(Same(bitmap.Rects(), slow.Rects()));
    EXPECT_EQ(Text(bitmap.Bounds()), Text(slow.Bounds()));
  }
}

TEST(RegionMotion, WithoutRegionOrBitmap) {
  Followed bitmap(8, 8);
  EXPECT_EQ(FlipRegion(bitmap), OK);
  EXPECT_EQ(ReverseRegion(bitmap), OK);
  EXPECT_EQ(ScaleRegion(bitmap, 2, 2), OK);
  EXPECT_EQ(RotateRegion(bitmap, 8, 8, 9000), OK);
  EXPECT_EQ(bitmap->Region, nullptr);
  EXPECT_EQ(FlipRegion(nullptr), ERR_NO_BITMAP);
  EXPECT_EQ(ReverseRegion(nullptr), ERR_NO_BITMAP);
  EXPECT_EQ(ScaleRegion(nullptr, 1, 1), ERR_NO_BITMAP);
  EXPECT_EQ(RotateRegion(nullptr, 1, 1, 1), ERR_NO_BITMAP);
}

HEADLESS_TEST(RegionMotion, FailuresHaveTheirCodeAndLeakNothing) {
  WalkFailures(HEADLESS_MEMORY, [](FailureRound& round) {
    Random random(64);
    Followed source(random, 30, 30), copy(20, 20);
    const VnStatus status = round.Run([&] { return CopyRegion(copy, source, 3, 3); });
    EXPECT_TRUE(status == OK || (round.Failed() && status == ERR_NO_MEMORY));
    if (status != OK) {
      EXPECT_EQ(copy->Region, nullptr);
    }
  });
  WalkFailures(HEADLESS_OBJECT, [](FailureRound& round) {
    Random random(64);
    Followed source(random, 30, 30), copy(30, 30);
    source.FillCache();
    EXPECT_EQ(round.Run([&] { return CopyRegion(copy, source, 0, 0); }), OK);
    EXPECT_EQ(copy->Region->CachedRegion == nullptr, round.Failed());
  });
  WalkFailures(
      HEADLESS_MEMORY,
      [](FailureRound& round) {
        // Enough runs for the list to grow.
        Random random(65);
        Followed bitmap(64, 64);
        RegionUnion board;
        for (int32_t y = 0; y < 64; ++y) {
          for (int32_t x = y % 2; x < 64; x += 2)
            board.Add({x, y, x + 1, y + 1});
        }
        Vn_SetBitmapRgnHandle(bitmap, nullptr, Region(board.Finish()).get(), 1);
        const std::vector<RECT> before = bitmap.Rects();
        const VnStatus status = round.Run([&] { return RotateRegion(bitmap, 64, 64, 100); });
        EXPECT_TRUE(status == OK || (round.Failed() && status == ERR_NO_MEMORY));
        if (status != OK) {
          EXPECT_TRUE(Same(bitmap.Rects(), before));
        }
      },
      2);
}

}  // namespace
}  // namespace vn::test
