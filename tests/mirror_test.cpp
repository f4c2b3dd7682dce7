// Mirrors and turns by right angles: exact motions of every pixel.
#include <gtest/gtest.h>

#include <algorithm>

#include "geometry/right_angle.h"
#include "tests/support/bitmaps.h"
#include "tests/support/pixel_set.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

Pixels Reversed(Pixels rows) {
  for (auto& row : rows)
    std::reverse(row.begin(), row.end());
  return rows;
}
Pixels Flipped(Pixels rows) {
  std::reverse(rows.begin(), rows.end());
  return rows;
}
Pixels Transposed(const Pixels& rows) {
  Pixels turned(rows[0].size(), std::vector<uint32_t>(rows.size()));
  for (size_t y = 0; y < rows.size(); ++y) {
    for (size_t x = 0; x < rows[y].size(); ++x)
      turned[x][y] = rows[y][x];
  }
  return turned;
}

struct Motion {
  const char* name;
  VnStatus (*run)(BitmapHandle*);
  Pixels (*seen)(const Pixels&);
};
const Motion kMotions[] = {
    {"flip", [](BitmapHandle* b) { return Vn_FlipBitmap(b); },
     [](const Pixels& p) { return Flipped(p); }},
    {"reverse", [](BitmapHandle* b) { return Vn_ReverseBitmap(b); },
     [](const Pixels& p) { return Reversed(p); }},
    {"half turn", [](BitmapHandle* b) { return Vn_RotateBitmap(b, 180, 0); },
     [](const Pixels& p) { return Flipped(Reversed(p)); }},
    {"clockwise", [](BitmapHandle* b) { return Vn_RotateBitmap(b, 90, 1); },
     [](const Pixels& p) { return Reversed(Transposed(p)); }},
    {"counter-clockwise", [](BitmapHandle* b) { return Vn_RotateBitmap(b, 270, 1); },
     [](const Pixels& p) { return Flipped(Transposed(p)); }},
};

// Small sizes cover the ragged ends, larger ones whole vectors, tiles and what is left of them.
TEST(Mirror, MovesEveryPixel) {
  WithEachVectorForm([] {
    Random random(70);
    for (int32_t i = 0; i < 300; ++i) {
      const int32_t most = i % 4 ? 40 : 700;
      const int32_t width = random.Between(1, most), height = random.Between(1, most);
      RandomBitmap bitmap(random, width, height, kDepths[i % 6]);
      const Pixels before = SeenPixels(bitmap);
      const Motion& motion = random.OneOf(kMotions);
      SCOPED_TRACE(Told(motion.name, "of", width, "by", height, ",", bitmap->BitsPerPixel, "bits"));
      ASSERT_EQ(motion.run(bitmap), OK);
      ASSERT_FALSE(bitmap->Flags & FLAG_LOCKED);
      ASSERT_TRUE(SeenPixels(bitmap) == motion.seen(before));
    }
  });
}

// Where sides are odd a turn has a pixel to go about.
TEST(Mirror, TakesTheRegionAlong) {
  for (const Motion& motion : kMotions) {
    for (const uint32_t origin : {VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST}) {
      SCOPED_TRACE(motion.name);
      Bitmap bitmap(51, 41, 24, origin);
      MarkRegion(bitmap, {3, 5, 30, 41});
      ASSERT_EQ(motion.run(bitmap), OK);
      ExpectRegionOnMark(bitmap);
    }
  }
}

// The rests of rows and last bytes, too: they are 0 behind a turn. A file's result goes into a file,
// as on a machine without the memory, which may leave none for runs and tiles either.
HEADLESS_TEST(Mirror, LeavesTheSameBytesInEveryStorage) {
  for (const auto& size :
       {std::pair{1, 43}, {4, 43}, {8, 43}, {16, 43}, {24, 43}, {32, 43}, {24, 1157}}) {
    const bool large = size.second > 43;  // several runs and tiles
    for (const Motion& motion : kMotions) {
      SCOPED_TRACE(motion.name);
      Bytes first;
      WithEachStorage([&](const StorageKind& kind) {
        Random random(72);
        Bitmap bitmap(1201, size.second, size.first, VIEW_BOTTOM_FIRST, ORDER_BGR, nullptr,
                      kind.request);
        FillRandom(bitmap, random);
        const bool file = kind.flags & FLAG_ON_DISK;
        if (file) Headless_SetLargestBlock(large ? bitmap->DataSize / 2 : 4900);
        const VnStatus status = motion.run(bitmap);
        Headless_SetLargestBlock(0);
        ASSERT_EQ(status, OK);
        EXPECT_EQ((bitmap->Flags & FLAG_ON_DISK) != 0, file);
        if (first.empty()) first = ReadAll(bitmap);
        EXPECT_TRUE(ReadAll(bitmap) == first);
      });
    }
  }
}

TEST(Mirror, TurnsTellProgressInTheirRange) {
  Bitmap bitmap(5, 333, 8);
  const StatusLog log;
  EXPECT_EQ(RotateHalfTurn(bitmap, 10, 35), OK);
  EXPECT_EQ(log.percents(), ExpectedPercents(167, 10, 35));
  const StatusLog second;
  EXPECT_EQ(RotateRightAngle(bitmap, true, 10, 35), OK);
  EXPECT_EQ(second.percents(), ExpectedPercents(333, 10, 35));
}

TEST(Mirror, StoppedKeepsWhatWasDoneInPlaceAndAllElse) {
  WithEachStorage([](const StorageKind& kind) {
    for (const Motion& motion : kMotions) {
      Random random(74);
      Bitmap bitmap(30, 20, 24, VIEW_TOP_FIRST, ORDER_BGR, nullptr, kind.request);
      FillRandom(bitmap, random);
      Select(bitmap, {3, 4, 17, 9});
      const Pixels before = SeenPixels(bitmap), after = motion.seen(before);
      {
        const StatusLog log(4, -77);
        EXPECT_EQ(motion.run(bitmap), -77);
        EXPECT_EQ(log.percents().size(), 4u);
      }
      EXPECT_EQ(Text(bitmap->Region->header.rcBound), "3,4,17,9");
      EXPECT_FALSE(bitmap->Flags & FLAG_LOCKED);
      const bool inPlace = after.size() == before.size();
      const bool pairs = motion.seen != kMotions[1].seen;
      const Pixels now = SeenPixels(bitmap);
      for (size_t y = 0; y < before.size(); ++y) {
        const bool done = inPlace && (y < 3 || (pairs && y >= before.size() - 3));
        EXPECT_TRUE(now[y] == (done ? after : before)[y]) << motion.name << ", row " << y;
      }
    }
  });
}

// A stride or a size that wrapped in 32 bits: there is storage, but not for the pixels.
TEST(Mirror, RefusesRowsTooShortForTheirPixels) {
  for (const Motion& motion : kMotions) {
    EXPECT_EQ(motion.run(nullptr), ERR_NO_BITMAP);
    Bitmap bitmap(9, 9, 24);
    bitmap->Width = 0x0AAAAAB5;  // 24 bits of it are 248 more than 32 bits hold
    EXPECT_EQ(motion.run(bitmap), ERR_NO_BITMAP);
    bitmap->Width = 9;
    bitmap->Height = 0x0A000009;
    EXPECT_EQ(motion.run(bitmap), ERR_NO_BITMAP);
    bitmap->Height = 9;
  }
}

}  // namespace
}  // namespace vn::test
