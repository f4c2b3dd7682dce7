// Mirrors and turns by right angles: exact motions of every pixel.
#include <gtest/gtest.h>

#include <algorithm>

#include "geometry/right_angle.h"
#include "kernel/vector.h"
#include "tests/support/bitmaps.h"
#include "tests/support/pixel_set.h"
#include "tests/support/pixels.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

using Pixels = std::vector<std::vector<uint32_t>>;

Pixels PixelsOf(BitmapHandle* bitmap) {
  Pixels rows;
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    rows.push_back(RowPixels(ReadRow(bitmap, static_cast<uint32_t>(row)),
                             static_cast<size_t>(bitmap->Width), bitmap->BitsPerPixel));
  }
  return rows;
}

// The picture as it is seen, top line first.
Pixels Seen(BitmapHandle* bitmap) {
  Pixels rows = PixelsOf(bitmap);
  if (bitmap->ViewOrigin == VIEW_BOTTOM_FIRST) std::reverse(rows.begin(), rows.end());
  return rows;
}

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

void SelectSome(BitmapHandle* bitmap, Random& random) {
  const RECT rect = RandomRect(random, 0, std::min(bitmap->Width, bitmap->Height));
  ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &rect, REGION_COMBINE_REPLACE), OK);
}

// Small sizes cover the ragged ends, larger ones whole vectors, tiles and what is left of them.
void MoveAnySizes(int32_t storage, uint64_t seed, int32_t rounds) {
  Random random(seed);
  for (int32_t i = 0; i < rounds; ++i) {
    const int32_t bits = kDepths[i % 6], most = i % 4 ? 40 : 700;
    const auto size = [&] { return static_cast<uint32_t>(random.Between(1, most)); };
    Bitmap bitmap(size(), size(), bits, i & 1 ? VIEW_TOP_FIRST : VIEW_BOTTOM_FIRST, ORDER_BGR,
                  nullptr, storage);
    FillRandom(bitmap, random);
    const Pixels before = Seen(bitmap);
    const Motion& motion = kMotions[random.Between(0, 4)];
    SCOPED_TRACE(testing::Message() << motion.name << " of " << bitmap->Width << " by "
                                    << bitmap->Height << ", " << bits << " bits");
    ASSERT_EQ(motion.run(bitmap), OK);
    ASSERT_FALSE(bitmap->Flags & FLAG_LOCKED);
    ASSERT_TRUE(Seen(bitmap) == motion.seen(before));
  }
}

TEST(Mirror, MovesEveryPixel) {
  MoveAnySizes(STORAGE_AUTO, 70, 400);
  const VectorLevel level = SetVectorLevel(VectorLevel::kNone);
  MoveAnySizes(STORAGE_AUTO, 71, 200);
  SetVectorLevel(level);
}

#ifndef _WIN32  // steers the headless platform
// The rests of rows and last bytes, too: they are 0 behind a turn. A file's result goes into a file,
// as on a machine without the memory; `largestBlock` may leave none for runs and tiles either.
void LeaveTheSameBytes(int32_t bits, uint32_t height, uint32_t largestBlock) {
  for (const Motion& motion : kMotions) {
    SCOPED_TRACE(testing::Message() << motion.name << ", " << bits << " bits");
    Bytes first;
    WithEachStorage([&](const StorageKind& kind) {
      Random random(72);
      Bitmap bitmap(1201, height, bits, VIEW_BOTTOM_FIRST, ORDER_BGR, nullptr, kind.request);
      FillRandom(bitmap, random);
      if (kind.flags & FLAG_ON_DISK) {
        Headless_SetLargestBlock(largestBlock ? largestBlock : bitmap->DataSize / 2);
      }
      const VnStatus status = motion.run(bitmap);
      Headless_SetLargestBlock(0);
      ASSERT_EQ(status, OK);
      EXPECT_EQ(bitmap->Flags & FLAG_ON_DISK, kind.flags & FLAG_ON_DISK);
      if (first.empty()) first = ReadAll(bitmap);
      EXPECT_TRUE(ReadAll(bitmap) == first);
    });
  }
}
HEADLESS_TEST(Mirror, LeavesTheSameBytesInEveryStorage) {
  LeaveTheSameBytes(24, 1157, 0);  // several runs and tiles
  for (const int32_t bits : kDepths)
    LeaveTheSameBytes(bits, 43, 4900);
}
#endif

// As pixels: on Win32s a rectangle is stored row by row.
PixelSet RegionPixels(BitmapHandle* bitmap) {
  return PixelSet::Of(0, 70, {bitmap->Region->begin(), bitmap->Region->end()});
}

TEST(Mirror, TurnedBackIsTheSame) {
  Random random(73);
  const auto run = [&](BitmapHandle* bitmap, std::vector<size_t> motions) {
    for (const size_t motion : motions)
      ASSERT_EQ(kMotions[motion].run(bitmap), OK);
  };
  for (int32_t i = 0; i < 60; ++i) {
    Bitmap bitmap(static_cast<uint32_t>(random.Between(2, 70)),
                  static_cast<uint32_t>(random.Between(2, 70)), kDepths[i % 6],
                  i & 1 ? VIEW_TOP_FIRST : VIEW_BOTTOM_FIRST);
    FillRandom(bitmap, random);
    SelectSome(bitmap, random);
    const PixelSet region = RegionPixels(bitmap);
    const Pixels before = PixelsOf(bitmap);
    for (const size_t motion : {0, 1}) {
      run(bitmap, {motion, motion});
      EXPECT_EQ(PixelsOf(bitmap), before);
      EXPECT_TRUE(RegionPixels(bitmap) == region);
    }
    for (const auto& motions :
         {std::vector<size_t>{2, 2}, {3, 3, 3, 3}, {3, 4}, {3, 3, 2}, {0, 1, 2}}) {
      run(bitmap, motions);
      EXPECT_EQ(PixelsOf(bitmap), before);
    }
  }
}

std::vector<int32_t> RangedPercents(int64_t units, int32_t start, int32_t end) {
  std::vector<int32_t> percents{start};
  for (int64_t unit = 1; unit <= units; ++unit) {
    const auto percent = static_cast<int32_t>(start + unit * (end - start) / units);
    if (units <= end - start || percent != percents.back()) percents.push_back(percent);
  }
  return percents;
}

TEST(Mirror, TellsProgressByRowsAndPairs) {
  for (const uint32_t height : {1u, 2u, 7u, 8u, 333u}) {
    Bitmap bitmap(5, height, 8);
    const auto heard = [&](auto work) {
      const StatusLog log;
      EXPECT_EQ(work(), OK);
      return log.percents();
    };
    // Without a pair there is nothing but the start.
    EXPECT_EQ(heard([&] { return Vn_FlipBitmap(bitmap); }), ExpectedPercents(height / 2));
    EXPECT_EQ(heard([&] { return Vn_ReverseBitmap(bitmap); }), ExpectedPercents(height));
    EXPECT_EQ(heard([&] { return RotateHalfTurn(bitmap, 10, 35); }),
              RangedPercents((height + 1) / 2, 10, 35));
    EXPECT_EQ(heard([&] { return RotateRightAngle(bitmap, true, 10, 35); }),
              RangedPercents(height, 10, 35));
  }
  // A height that was changed to nothing has no rows to tell of.
  Bitmap bitmap(5, 3, 8);
  bitmap->Height = 0;
  const StatusLog log;
  EXPECT_EQ(Vn_FlipBitmap(bitmap), OK);
  EXPECT_EQ(Vn_ReverseBitmap(bitmap), OK);
  EXPECT_EQ(log.percents(), (std::vector<int32_t>{0, 0}));
}

void StopAfterThreeRows(const Motion& motion, int32_t storage) {
  Random random(74);
  Bitmap bitmap(30, 20, 24, VIEW_TOP_FIRST, ORDER_BGR, nullptr, storage);
  FillRandom(bitmap, random);
  SelectSome(bitmap, random);
  const std::string region = Text(*bitmap->Region->begin());
  const Pixels before = Seen(bitmap), after = motion.seen(before);
  {
    const StatusLog log(4, -77);
    EXPECT_EQ(motion.run(bitmap), -77);
    EXPECT_EQ(log.percents().size(), 4u);
  }
  EXPECT_EQ(Text(*bitmap->Region->begin()), region);
  EXPECT_FALSE(bitmap->Flags & FLAG_LOCKED);
  const bool inPlace = after.size() == before.size();
  const bool pairs = motion.seen != kMotions[1].seen;
  const Pixels now = Seen(bitmap);
  for (size_t y = 0; y < before.size(); ++y) {
    const bool done = inPlace && (y < 3 || (pairs && y >= before.size() - 3));
    EXPECT_TRUE(now[y] == (done ? after : before)[y]) << motion.name << ", row " << y;
  }
}

TEST(Mirror, StoppedKeepsWhatWasDoneInPlaceAndAllElse) {
  for (const Motion& motion : kMotions)
    StopAfterThreeRows(motion, STORAGE_AUTO);
}
#ifndef _WIN32
HEADLESS_TEST(Mirror, StoppedInAFileKeepsTheSame) {
  const Win32sScope scope;
  for (const Motion& motion : kMotions)
    StopAfterThreeRows(motion, STORAGE_DISK);
}
#endif

// A stride or a size that wrapped in 32 bits: there is storage, but not for the pixels.
TEST(Mirror, RefusesRowsTooShortForTheirPixels) {
  for (const Motion& motion : kMotions) {
    EXPECT_EQ(motion.run(nullptr), ERR_NO_BITMAP);
    Bitmap empty;
    EXPECT_EQ(motion.run(empty), ERR_NO_BITMAP);
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
