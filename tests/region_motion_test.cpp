// The region that follows its picture.
#include "region/region_motion.h"

#include <gtest/gtest.h>

#include "tests/support/pixel_set.h"

namespace vn::test {
namespace {

// What Vn_GetBitmapRgnHandle gives has the pixels of the list: no cached object has outlived it.
void ExpectObjectFits(Plain& bitmap) {
  EXPECT_EQ(PixelSet::Of(-50, 150, RectsOf(bitmap.Get().get())),
            PixelSet::Of(-50, 150, bitmap.Rects()));
}

TEST(RegionMotion, CopyMovesAndCuts) {
  Random random(62);
  for (int32_t round = 0; round < 80; ++round) {
    Plain source(random);
    source.Select(RandomRegion(random).get());
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

}  // namespace
}  // namespace vn::test
