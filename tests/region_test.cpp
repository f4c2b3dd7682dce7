// The region of a bitmap, against pixels: store, transforms, segments.
#include <gtest/gtest.h>

#include "region/region_rows.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

constexpr int32_t kLow = 0, kHigh = 48;

// Some shape that reaches beyond a bitmap of up to 40 pixels.
Region RandomShape(Random& random) {
  RegionUnion shape;
  for (int32_t i = random.Between(0, 6); i > 0; --i) {
    EXPECT_TRUE(shape.Add(RandomRect(random, -6, 46)));
  }
  Region made(shape.Finish());
  if (random.Chance(3)) {
    const RECT box = {-3, 2, 37, random.Between(30, 44)};
    const Region ellipse(CreateEllipticRgnIndirect(&box));
    CombineRgn(made.get(), made.get(), ellipse.get(), RGN_XOR);
  }
  return made;
}

PixelSet Selected(const BitmapHandle* bitmap) {
  PixelSet set(kLow, kHigh);
  for (int32_t y = kLow; y < kHigh; ++y) {
    for (int32_t x = kLow; x < kHigh; ++x)
      set.Set(x, y, Vn_IsPtInBitmapRgn(bitmap, y, x) != 0);
  }
  return set;
}

// The pixels of rectangles, as far as they lie in the bitmap.
PixelSet Clipped(const BitmapHandle* bitmap, const std::vector<RECT>& rects) {
  PixelSet set(kLow, kHigh);
  for (const RECT& rect : rects) {
    set.ForRect(
        {std::max<LONG>(rect.left, 0), std::max<LONG>(rect.top, 0),
         std::min<LONG>(rect.right, bitmap->Width), std::min<LONG>(rect.bottom, bitmap->Height)},
        [](bool) { return true; });
  }
  return set;
}

RECT BoundsOf(BitmapHandle* bitmap, const RegionTransform* transform = nullptr) {
  RECT bounds;
  EXPECT_EQ(Vn_GetBitmapRgnBounds(bitmap, transform, &bounds), OK);
  return bounds;
}

RegionTransform RandomTransform(Random& random) {
  return {random.Between(0, 1) * 2, random.Between(0, 5), random.Between(1, 4),
          random.Between(-1, 5),    random.Between(1, 4), random.Between(-9, 9),
          random.Between(-9, 9)};
}

// What a set transform does to one rectangle, and a get transform, in plain steps.
RECT MappedIn(RECT r, const RegionTransform& t, const BitmapHandle* bitmap) {
  r = {r.left + t.XOffset, r.top + t.YOffset, r.right + t.XOffset, r.bottom + t.YOffset};
  r.left = r.left * t.XScaleNumerator / t.XScaleDenominator;
  r.right = r.right * t.XScaleNumerator / t.XScaleDenominator;
  r.top = r.top * t.YScaleNumerator / t.YScaleDenominator;
  r.bottom = r.bottom * t.YScaleNumerator / t.YScaleDenominator;
  if (static_cast<uint32_t>(t.ViewOrigin) != bitmap->ViewOrigin) {
    r = {r.left, bitmap->Height - r.bottom, r.right, bitmap->Height - r.top};
  }
  return r;
}

RECT MappedOut(RECT r, const RegionTransform& t, const BitmapHandle* bitmap) {
  if (static_cast<uint32_t>(t.ViewOrigin) != bitmap->ViewOrigin) {
    r = {r.left, bitmap->Height - r.bottom, r.right, bitmap->Height - r.top};
  }
  const int32_t xUp = t.XScaleNumerator == t.XScaleDenominator ? 0 : t.XScaleDenominator - 1;
  const bool roundsUp = t.ViewOrigin == 2 && t.YScaleNumerator != t.YScaleDenominator;
  const int32_t yUp = roundsUp ? t.YScaleDenominator - 1 : 0;
  r.left = (r.left * t.XScaleNumerator + xUp) / t.XScaleDenominator + t.XOffset;
  r.right = (r.right * t.XScaleNumerator + xUp) / t.XScaleDenominator + t.XOffset;
  r.top = (r.top * t.YScaleNumerator + yUp) / t.YScaleDenominator + t.YOffset;
  r.bottom = (r.bottom * t.YScaleNumerator + yUp) / t.YScaleDenominator + t.YOffset;
  return r;
}

TEST(Region, TransformsMapRectangleByRectangle) {
  Random random(51);
  for (int32_t round = 0; round < 120; ++round) {
    SCOPED_TRACE(round);
    Plain bitmap(random, random.Between(0, 1) * 2u);
    const RegionTransform in = RandomTransform(random), out = RandomTransform(random);
    const Region shape = RandomShape(random);
    std::vector<RECT> mapped = RectsOf(shape.get());
    RECT box;
    GetRgnBox(shape.get(), &box);
    for (RECT& rect : mapped)
      rect = MappedIn(rect, in, bitmap);
    ASSERT_EQ(Vn_SetBitmapRgnHandle(bitmap, &in, shape.get(), REGION_COMBINE_REPLACE), OK);
    EXPECT_EQ(Selected(bitmap), Clipped(bitmap, mapped));
    box = MappedIn(box, in, bitmap);
    const RECT whole = {0, 0, bitmap->Width, bitmap->Height};
    RECT bounds = {std::max(box.left, whole.left), std::max(box.top, whole.top),
                   std::min(box.right, whole.right), std::min(box.bottom, whole.bottom)};
    if (bounds.left >= bounds.right || bounds.top >= bounds.bottom) bounds = {0, 0, 0, 0};
    EXPECT_EQ(Text(BoundsOf(bitmap)), Text(bounds));

    EXPECT_EQ(Text(BoundsOf(bitmap, &out)), Text(MappedOut(bounds, out, bitmap)));
    PixelSet expected(-100, 300);
    for (RECT rect : bitmap.Rects()) {
      rect = MappedOut(rect, out, bitmap);
      // A region has its corners in order, whichever way a scale turns them.
      if (rect.top > rect.bottom) std::swap(rect.top, rect.bottom);
      expected.ForRect(rect, [](bool) { return true; });
    }
    EXPECT_EQ(PixelSet::Of(-100, 300, RectsOf(bitmap.Get(&out).get())), expected);
    if (HasFailure()) break;
  }
}

TEST(Region, ModesCombineOldAndNew) {
  // For each mode: the pixels in neither (1), in the new alone (2), in the old alone (4), in both.
  const uint32_t selects[] = {8, 2 | 8, 2, 4, 2 | 4 | 8, 2 | 4, 1 | 4};
  Random random(52);
  for (uint32_t round = 0; round < 140; ++round) {
    const uint32_t mode = round % 7;
    SCOPED_TRACE(testing::Message() << "round " << round << ", mode " << mode);
    Plain bitmap(random);
    if (round % 3) bitmap.Select(RandomShape(random).get());
    const PixelSet before = Selected(bitmap);
    const Region shape = RandomShape(random);
    const PixelSet added = Clipped(bitmap, RectsOf(shape.get()));
    ASSERT_EQ(Vn_SetBitmapRgnHandle(bitmap, nullptr, shape.get(), mode), OK);
    PixelSet expected(kLow, kHigh);
    for (int32_t y = 0; y < bitmap->Height; ++y) {
      for (int32_t x = 0; x < bitmap->Width; ++x) {
        expected.Set(x, y, selects[mode] >> (2 * before.At(x, y) + added.At(x, y)) & 1);
      }
    }
    EXPECT_EQ(Selected(bitmap), expected);
    uint32_t area = 0;
    EXPECT_EQ(Vn_GetBitmapRgnArea(bitmap, &area), OK);
    EXPECT_EQ(area, static_cast<uint32_t>(expected.Count()));
  }
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

TEST(Region, OffsetCutsAtTheEdges) {
  Random random(53);
  for (int32_t round = 0; round < 40; ++round) {
    Plain bitmap(random);
    if (round % 4) bitmap.Select(RandomShape(random).get());
    const PixelSet before = Selected(bitmap);
    const int32_t rows = random.Between(-12, 12), columns = random.Between(-12, 12);
    ASSERT_EQ(Vn_OffsetBitmapRgn(bitmap, rows, columns), OK);
    EXPECT_EQ(Vn_BitmapHasRgn(bitmap), 1);
    PixelSet expected(kLow, kHigh);
    for (int32_t y = 0; y < bitmap->Height; ++y) {
      for (int32_t x = 0; x < bitmap->Width; ++x) {
        expected.Set(x, y, before.At(x - columns, y - rows));
      }
    }
    EXPECT_EQ(Selected(bitmap), expected);
  }
}

// The runs of a row are its pixels, whatever the order of the list, and the cursor of the row loops
// tells what the public function tells.
TEST(Region, SegmentsAreThePointTestOfTheirRow) {
  Random random(54);
  for (int32_t round = 0; round < 60; ++round) {
    Plain bitmap(random);
    bitmap.Select(RandomShape(random).get());
    RECT* rects = bitmap->Region->begin();
    const auto count = static_cast<int32_t>(bitmap->Region->header.nCount);
    if (round % 3 == 1) std::reverse(rects, rects + count);
    if (round % 3 == 2) {
      for (int32_t i = count - 1; i > 0; --i)
        std::swap(rects[i], rects[random.Between(0, i)]);
    }
    RegionRows rows(bitmap->Region);
    std::vector<int32_t> runs(ClipSegmentsCapacity(bitmap) + 1), same(runs.size());
    for (int32_t i = 0; i < 2 * bitmap->Height; ++i) {
      const int32_t row = i < bitmap->Height ? i : random.Between(-2, bitmap->Height + 1);
      int32_t entries = -1;
      ASSERT_EQ(Vn_GetBitmapClipSegments(bitmap, row, runs.data(), &entries), OK);
      ASSERT_LE(static_cast<size_t>(entries), ClipSegmentsCapacity(bitmap));
      PixelSet found(kLow, kHigh);
      for (int32_t k = 0; k < entries; k += 2) {
        for (int32_t x = runs[k]; x < runs[k + 1]; ++x)
          found.Set(x, 0, true);
      }
      for (int32_t x = 0; x < kHigh; ++x) {
        ASSERT_EQ(found.At(x, 0), Vn_IsPtInBitmapRgn(bitmap, row, x) != 0) << x << ", " << row;
        ASSERT_EQ(found.At(x, 0), rows.Contains(row, x)) << x << ", " << row;
      }
      ASSERT_EQ(rows.Segments(row, same.data()), entries);
      ASSERT_TRUE(std::equal(runs.begin(), runs.begin() + entries, same.begin()));
    }
  }
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

HEADLESS_TEST(Region, ScanOnWin32sFindsTheSamePixels) {
  Random random(55);
  for (int32_t round = 0; round < 30; ++round) {
    Plain bitmap(random);
    const Region shape = RandomShape(random);
    bitmap.Select(shape.get());
    const PixelSet pixels = Selected(bitmap);
    const std::string bounds = Text(BoundsOf(bitmap));
    const Win32sScope win32s;
    EXPECT_EQ(GetRegionData(shape.get(), 0, nullptr), 0u);
    bitmap.Select(shape.get());
    EXPECT_EQ(Selected(bitmap), pixels);
    EXPECT_EQ(Text(BoundsOf(bitmap)), bounds);
    EXPECT_EQ(bitmap->Region->header.nRgnSize, 16 * bitmap->Region->header.nCount);
    for (const RECT& rect : bitmap.Rects())
      EXPECT_EQ(rect.bottom, rect.top + 1);
  }
}

// Every allocation and every region call of every function, failing in turn: the stated code, and
// the old region or, in the middle of a combination, the new shape alone.
HEADLESS_TEST(Region, FailuresHaveTheirCodeAndLeakNothing) {
  Random random(57);
  const Region shape = RandomShape(random), other = RandomShape(random);
  const RegionTransform transform = {0, 2, 3, 3, 2, 1, -1};
  for (const Headless_Operation family : {HEADLESS_MEMORY, HEADLESS_OBJECT}) {
    for (uint32_t mode = 0; mode < 7; ++mode) {
      if (family == HEADLESS_OBJECT && mode == REGION_COMBINE_REPLACE) continue;  // needs none
      WalkFailures(family, [&](FailureRound& round) {
        Plain bitmap(30, 20), alone(30, 20);
        bitmap.Select(other.get());
        Vn_SetBitmapRgnHandle(alone, &transform, shape.get(), 1);
        const PixelSet before = Selected(bitmap);
        const VnStatus status =
            round.Run([&] { return Vn_SetBitmapRgnHandle(bitmap, &transform, shape.get(), mode); });
        EXPECT_TRUE(status == OK || (round.Failed() && status == ERR_NO_MEMORY)) << status;
        if (status == OK) return;  // shrinking a block may fail and be made good
        const PixelSet after = Selected(bitmap);
        EXPECT_TRUE(after == before || (mode != 1 && mode != 6 && after == Selected(alone)));
      });
    }
    const auto walk = [&](auto operation) {
      WalkFailures(family, [&](FailureRound& round) {
        Plain bitmap(30, 20);
        bitmap.Select(other.get());
        const PixelSet before = Selected(bitmap);
        const VnStatus status = round.Run([&] { return operation(bitmap); });
        EXPECT_TRUE(status == OK || (round.Failed() && status == ERR_NO_MEMORY)) << status;
        EXPECT_TRUE(status == OK || Selected(bitmap) == before);
      });
    };
    walk([](BitmapHandle* bitmap) { return Vn_OffsetBitmapRgn(bitmap, 1, 2); });
    const RECT box = {1, 2, 28, 19};
    const POINT points[] = {{0, 0}, {20, 3}, {9, 19}};
    walk([&](BitmapHandle* b) { return Vn_SetBitmapRgnRect(b, nullptr, &box, 1); });
    walk([&](BitmapHandle* b) { return Vn_SetBitmapRgnEllipse(b, nullptr, &box, 1); });
    walk([&](BitmapHandle* b) { return Vn_SetBitmapRgnRoundRect(b, nullptr, &box, 5, 5, 1); });
    walk([&](BitmapHandle* b) { return Vn_SetBitmapRgnPolygon(b, nullptr, points, 3, 0, 1); });
    const Win32sScope win32s;  // the scan
    walk([&](BitmapHandle* b) { return Vn_SetBitmapRgnHandle(b, nullptr, shape.get(), 1); });
  }
  // A get fails with every region call, the first and the one that a full cache serves.
  for (const bool cached : {false, true}) {
    WalkFailures(HEADLESS_OBJECT, [&](FailureRound& round) {
      Plain bitmap(30, 20);
      bitmap.Select(other.get());
      if (cached) bitmap.Get();
      HRGN got = nullptr;
      const VnStatus status =
          round.Run([&] { return Vn_GetBitmapRgnHandle(bitmap, nullptr, &got); });
      EXPECT_EQ(status, round.Failed() ? ERR_NO_MEMORY : OK);
      if (status == OK) DeleteObject(got);
    });
  }
}

}  // namespace
}  // namespace vn::test
