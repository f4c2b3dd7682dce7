// The region of a bitmap: segments, the cache, failures. Shapes and transforms are in the numbered
// cases.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

#include "region/region_motion.h"
#include "region/region_rows.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

RECT BoundsOf(BitmapHandle* bitmap, const RegionTransform* transform = nullptr) {
  RECT bounds;
  EXPECT_EQ(Vn_GetBitmapRgnBounds(bitmap, transform, &bounds), OK);
  return bounds;
}

// Wrong transforms where there is nothing to transform; no region, and one that is empty.
TEST(Region, NothingToTransformNothingSelected) {
  Plain bitmap(10, 8);
  const Region outside(CreateRectRgn(50, 50, 60, 60));
  for (const RegionTransform& wrong :
       {RegionTransform{1, 1, 1, 1, 1, 0, 0}, RegionTransform{0, 1, 0, 1, 1, 0, 0},
        RegionTransform{2, 1, 1, 1, 0, 0, 0}}) {
    EXPECT_EQ(Vn_SetBitmapRgnHandle(bitmap, &wrong, outside.get(), 1), ERR_INVALID_PARAMETER);
    EXPECT_EQ(Vn_SetBitmapRgnHandle(bitmap, &wrong, nullptr, 5), OK);
  }
  int32_t count, segments[4];
  EXPECT_EQ(Text(BoundsOf(bitmap)), "0,0,10,8");
  EXPECT_EQ(Vn_GetBitmapClipSegments(bitmap, -7, segments, &count), OK);
  EXPECT_TRUE(count == 2 && segments[0] == 0 && segments[1] == 10);
  bitmap.Select(outside.get());
  EXPECT_EQ(Vn_BitmapHasRgn(bitmap), 1);
  EXPECT_EQ(Text(BoundsOf(bitmap)), "0,0,0,0");
  EXPECT_EQ(Vn_GetBitmapClipSegments(bitmap, 0, segments, &count), OK);
  EXPECT_EQ(count, 0);
}

// A run takes two entries, and the maximum that is reported counts one.
TEST(Region, CapacityHoldsRowsThatAlternate) {
  Plain bitmap(11, 1);
  RegionUnion comb;
  for (int32_t x = 0; x < 11; x += 2)
    comb.Add({x, 0, x + 1, 1});
  bitmap.Select(Region(comb.Finish()).get());
  int32_t reported = 0;
  Vn_GetBitmapClipSegmentsMax(bitmap, &reported);
  EXPECT_EQ(reported, 6);
  EXPECT_GE(ClipSegmentsCapacity(bitmap), 12u);
}

// Runs and points of every row are those of a walk through the list: of the platform's, of one that
// was turned over where it lies, and of one in any order that a caller brought in a block that ends
// with it.
TEST(Region, RowsAreThoseOfAWalkThroughAnyList) {
  Random random(3);
  for (int32_t round = 0; round < 60; ++round) {
    Plain bitmap(40, 30);
    RegionUnion shape;
    for (int32_t i = 0, x, y; i < round / 2; ++i) {
      x = random.Between(0, 38), y = random.Between(0, 28);
      shape.Add({x, y, x + random.Between(1, 9), y + random.Between(1, 4)});
    }
    bitmap.Select(Region(shape.Finish()).get());
    RegionRecord* const record = bitmap->Region;
    const size_t bytes = sizeof *record + record->header.nCount * sizeof(RECT);
    auto* brought = static_cast<RegionRecord*>(Vn_OsAlloc(static_cast<uint32_t>(bytes)));
    std::memcpy(static_cast<void*>(brought), record, bytes);
    const auto last = static_cast<int32_t>(record->header.nCount) - 1;
    for (RECT& rect : *brought)
      std::swap(rect, brought->Rects()[random.Between(0, last)]);
    const auto look = [&] {
      for (int32_t y = -1; y < 31; ++y) {
        std::vector<int32_t> walked, found(80);
        for (const RECT& rect : *bitmap->Region)
          if (rect.top <= y && y < rect.bottom)
            walked.insert(walked.end(), {rect.left, rect.right});
        int32_t count = 0;
        Vn_GetBitmapClipSegments(bitmap, y, found.data(), &count);
        found.resize(static_cast<size_t>(count));
        ASSERT_EQ(found, walked);
        for (int32_t x = 0; x < 40; ++x) {
          int32_t inside = 0;
          for (size_t i = 0; i < walked.size(); i += 2)
            inside |= walked[i] <= x && x < walked[i + 1];
          ASSERT_EQ(Vn_IsPtInBitmapRgn(bitmap, y, x), inside);
        }
      }
    };
    look();
    FlipRegion(bitmap);
    look();
    ReverseRegion(bitmap);
    look();
    bitmap->Region = brought;
    look();
    FlipRegion(bitmap);
    look();
    Vn_FreeBitmapRgn(bitmap);
    bitmap->Region = record;
  }
}

HEADLESS_TEST(Region, CacheServesTheTransformItWasBuiltFor) {
  Plain bitmap(30, 30);
  RegionUnion shape;
  for (int32_t i = 0; i < 9; ++i)
    shape.Add({i, 3 * i, i + 2, 3 * i + 2});
  bitmap.Select(Region(shape.Finish()).get());
  const RegionTransform doubled = {2, 2, 1, 2, 1, 0, 0}, moved = {2, 2, 1, 2, 1, 0, 1};
  // Region calls that a get takes; a copy takes two.
  const auto cost = [&](const RegionTransform* transform) {
    Headless_FailNth(HEADLESS_OBJECT, 0);
    const Region got = bitmap.Get(transform);
    const uint32_t calls = Headless_OperationCount(HEADLESS_OBJECT);
    EXPECT_NE(got.get(), bitmap->Region->CachedRegion);
    return calls;
  };
  const RegionTransform* const transforms[] = {nullptr, &doubled, &moved};
  for (const RegionTransform* transform : transforms) {
    EXPECT_GT(cost(transform), 9u);
    EXPECT_EQ(cost(transform), 2u);
  }
  // A record that once had a transform keeps its mark: without one it misses every time, and what
  // it stores then passes for that transform's.
  EXPECT_GT(cost(nullptr), 9u);
  EXPECT_GT(cost(nullptr), 9u);
  EXPECT_EQ(cost(&moved), 2u);
}

// Regions from pixels and regions on devices: what is refused. The rest is in the numbered cases.
TEST(RegionColor, AColourThatIsNowhereSelectsNothing) {
  Bitmap bitmap(5, 4, 24);
  EXPECT_EQ(Vn_SetBitmapRgnColor(bitmap, 0x123456, REGION_COMBINE_REPLACE), OK);
  uint32_t area = 1;
  EXPECT_EQ(Vn_GetBitmapRgnArea(bitmap, &area), OK);
  EXPECT_TRUE(Vn_BitmapHasRgn(bitmap) && area == 0);
  EXPECT_EQ(Vn_SetBitmapRgnColor(bitmap, 0, 7), ERR_INVALID_PARAMETER);
  BitmapHandle none{};
  EXPECT_EQ(Vn_SetBitmapRgnColor(&none, 0, 1), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_SetBitmapRgnColor(nullptr, 0, 7), ERR_NO_BITMAP);
}

TEST(RegionPaint, RefusesWhatItCannotPaint) {
  const ScreenDC screen;
  Bitmap bitmap(1, 1, 8);
  const auto paint = [&](BitmapHandle* picture) {
    return Vn_PaintRgnDC(screen.get(), picture, nullptr, nullptr, nullptr, nullptr, SRCCOPY);
  };
  EXPECT_EQ(paint(nullptr), ERR_NO_BITMAP);
  EXPECT_EQ(paint(bitmap), ERR_INVALID_PARAMETER);
}

TEST(RegionFrame, RefusesFramesThatThereAreNot) {
  const ScreenDC screen;
  Plain plain(30, 20);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), plain, nullptr, 8), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_FrameBitmapRgn(screen.get(), nullptr, nullptr, 8), ERR_NO_BITMAP);
}

}  // namespace
}  // namespace vn::test
