// The platform's regions against sets of single pixels.
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

constexpr int32_t kLow = -4, kHigh = 44;

Region EmptyRegion() { return Region(CreateRectRgn(0, 0, 0, 0)); }
PixelSet PixelsOf(HRGN region) { return PixelSet::Of(kLow, kHigh, RectsOf(region)); }

// A region of random rectangles, and the same as pixels.
struct Sample {
  Region region = EmptyRegion();
  PixelSet pixels{kLow, kHigh};

  Sample(Random& random, int32_t rects) {
    const Region part = EmptyRegion();
    for (int32_t i = 0; i < rects; ++i) {
      const RECT rect = RandomRect(random, kLow, kHigh);
      SetRectRgn(part.get(), rect.left, rect.top, rect.right, rect.bottom);
      const int mode = random.Between(RGN_OR, RGN_DIFF);
      CombineRgn(region.get(), region.get(), part.get(), mode);
      pixels.ForRect(rect, [&](bool on) {
        return mode == RGN_OR ? true : mode == RGN_DIFF ? false : !on;
      });
    }
  }
};

// Banded, coalesced, with tight bounds and the right kind.
void ExpectCanonical(HRGN region, const PixelSet& pixels, int kind) {
  const std::vector<RECT> rects = RectsOf(region);
  EXPECT_EQ(PixelSet::Of(kLow, kHigh, rects), pixels);
  RECT box;
  EXPECT_EQ(GetRgnBox(region, &box), kind);
  EXPECT_EQ(Text(box), Text(pixels.Bounds()));
  EXPECT_EQ(kind, rects.empty() ? NULLREGION : rects.size() == 1 ? SIMPLEREGION : COMPLEXREGION);
  for (size_t i = 1; i < rects.size(); ++i) {
    const RECT &a = rects[i - 1], &b = rects[i];
    EXPECT_TRUE(a.top == b.top ? a.bottom == b.bottom && a.right < b.left : a.bottom <= b.top)
        << Text(a) << " before " << Text(b);
  }
  // Two bands that touch differ somewhere: rows on both sides of the seam are not the same.
  for (size_t i = 1; i < rects.size(); ++i) {
    if (rects[i].top == rects[i - 1].top || rects[i].top != rects[i - 1].bottom) continue;
    bool same = true;
    for (int32_t x = kLow; x < kHigh; ++x) {
      same &= pixels.At(x, rects[i].top) == pixels.At(x, rects[i].top - 1);
    }
    EXPECT_FALSE(same) << "bands meet at row " << rects[i].top << " and are the same";
  }
}

TEST(PlatformRegion, CombinesLikePixelSets) {
  Random random(40);
  for (int32_t round = 0; round < 400; ++round) {
    SCOPED_TRACE(round);
    const Sample a(random, random.Between(0, 12)), b(random, random.Between(0, 12));
    const int mode = random.Between(RGN_AND, RGN_COPY);
    const auto combine = [mode](bool x, bool y) {
      const bool results[] = {x && y, x || y, x != y, x && !y, x};
      return results[mode - RGN_AND];
    };
    // The result may be a region of its own, either operand, or both operands one region.
    const bool self = round % 7 == 6;
    const HRGN second = self ? a.region.get() : b.region.get();
    const PixelSet expected = PixelSet::Of(a.pixels, self ? a.pixels : b.pixels, combine);
    const Region own(CreateRectRgn(1, 2, 3, 4));
    const HRGN results[] = {own.get(), a.region.get(), b.region.get()};
    const HRGN result = results[round % 3];
    const int kind = CombineRgn(result, a.region.get(), second, mode);
    ExpectCanonical(result, expected, kind);
    const RECT rect = RandomRect(random, kLow, kHigh);
    PixelSet window(kLow, kHigh);
    window.ForRect(rect, [](bool) { return true; });
    const auto both = [](bool x, bool y) { return x && y; };
    EXPECT_EQ(RectInRegion(result, &rect) != FALSE,
              PixelSet::Of(window, expected, both).Count() > 0);
    if (HasFailure()) break;
  }
}

TEST(PlatformRegion, DeadHandlesCombineToNothing) {
  const Region living(CreateRectRgn(1, 2, 30, 40));
  const HRGN dead = CreateRectRgn(0, 0, 9, 9);
  ASSERT_TRUE(DeleteObject(dead));
  for (const int mode : {RGN_AND, RGN_OR, RGN_XOR, RGN_DIFF, RGN_COPY}) {
    EXPECT_EQ(CombineRgn(dead, living.get(), living.get(), mode), RGN_ERROR);
    EXPECT_EQ(CombineRgn(living.get(), dead, living.get(), mode), RGN_ERROR);
    if (mode != RGN_COPY) {
      EXPECT_EQ(CombineRgn(living.get(), living.get(), dead, mode), RGN_ERROR);
    }
    RECT box;
    EXPECT_EQ(GetRgnBox(living.get(), &box), SIMPLEREGION);
    EXPECT_EQ(Text(box), "1,2,30,40");
  }
}

HEADLESS_TEST(PlatformRegion, FailedCallsLeaveTheResultAlone) {
  Random random(43);
  const Sample a(random, 6), b(random, 6);
  WalkFailures(HEADLESS_OBJECT, [&](FailureRound& round) {
    const Region made(round.Run([] { return CreateRectRgn(1, 1, 2, 2); }));
    EXPECT_EQ(static_cast<bool>(made), !round.Failed());
  });
  WalkFailures(HEADLESS_OBJECT, [&](FailureRound& round) {
    const int kind = round.Run(
        [&] { return CombineRgn(a.region.get(), a.region.get(), b.region.get(), RGN_OR); });
    EXPECT_EQ(kind == RGN_ERROR, round.Failed());
    if (round.Failed()) {
      EXPECT_EQ(PixelsOf(a.region.get()), a.pixels);
    }
  });
}

}  // namespace
}  // namespace vn::test
