// Segment writes against a model that sets one pixel at a time; fill and clear through regions.
#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixels.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

using Segments = std::vector<int32_t>;

VnStatus PutSegments(BitmapHandle* bitmap, const Bytes& source, uint32_t row, int32_t offset,
                     const Segments& segments) {
  const int32_t state = Vn_LockBitmap(bitmap);
  const VnStatus status = Vn_PutBitmapRowSegments(
      bitmap, source.data(), row, offset, segments.data(), static_cast<int32_t>(segments.size()));
  Vn_UnlockBitmap(bitmap, state);
  return status;
}

// Columns from `low` on, in rising runs with gaps of 0 and more, the last below `high`.
Segments RandomSegments(Random& random, int32_t low, int32_t high) {
  Segments segments;
  for (int32_t at = low + random.Between(0, 9); at < high; at += random.Between(0, 9)) {
    const int32_t right = random.Between(at + 1, high);
    segments.insert(segments.end(), {at, right});
    at = right;
  }
  return segments;
}

void WritesEqualSinglePixels(int32_t storage, int32_t rounds) {
  Random random(51);
  for (int32_t i = 0; i < rounds; ++i) {
    const int32_t bits = kDepths[i % 6];
    const int32_t width = random.Between(1, 70);
    Bitmap bitmap(static_cast<uint32_t>(width), 3, bits, VIEW_BOTTOM_FIRST, ORDER_BGR, nullptr,
                  storage);
    FillRandom(bitmap, random);
    Bytes source(bitmap->BytesPerLine + 16);
    random.Fill(source.data(), source.size());
    const int32_t unit = bits == 1 ? 8 : bits == 4 ? 2 : 1;
    const int32_t offset = random.Between(-width / unit / 2, width / unit / 2) * unit;
    const Segments segments =
        RandomSegments(random, std::max(0, -offset), std::min(width, width - offset));
    SCOPED_TRACE(testing::Message() << bits << " bits, offset " << offset << ", segments "
                                    << testing::PrintToString(segments));
    const Bytes above = ReadRow(bitmap, 0), below = ReadRow(bitmap, 2);
    Bytes expected = ReadRow(bitmap, 1);
    for (size_t s = 0; s < segments.size(); s += 2) {
      for (int32_t c = segments[s]; c < segments[s + 1]; ++c) {
        SetPixelBits(&expected, static_cast<size_t>(c + offset), bits,
                     PixelBits(source, static_cast<size_t>(c), bits));
      }
    }
    ASSERT_EQ(PutSegments(bitmap, source, 1, offset, segments), OK);
    ASSERT_EQ(ReadRow(bitmap, 1), expected);
    ASSERT_EQ(ReadRow(bitmap, 0), above);
    ASSERT_EQ(ReadRow(bitmap, 2), below);
  }
}

TEST(SegmentWrite, EqualsSinglePixels) { WritesEqualSinglePixels(STORAGE_AUTO, 1200); }

HEADLESS_TEST(SegmentWrite, EqualsSinglePixelsOnWin32s) {
  const Win32sScope scope;
  WritesEqualSinglePixels(STORAGE_MEMORY, 300);
  WritesEqualSinglePixels(STORAGE_DISK, 300);
}

TEST(SegmentWrite, NoSegmentsNoMove) {
  Bitmap bitmap(8, 4, 8);
  Vn_LockBitmap(bitmap);
  const Bytes row(8, 1);
  EXPECT_EQ(Vn_PutBitmapRowSegments(bitmap, row.data(), 3, 0, nullptr, 0), OK);
  EXPECT_EQ(bitmap->CurrentRow, 0u);
  const int32_t segment[] = {2, 3};
  EXPECT_EQ(Vn_PutBitmapRowSegments(bitmap, row.data(), 3, 0, segment, 2), OK);
  EXPECT_EQ(bitmap->CurrentRow, 3u);
  EXPECT_EQ(bitmap->CurrentOffset, 3 * bitmap->BytesPerLine);
  Vn_ReleaseBitmap(bitmap);
}

// Each file operation of a run over three bytes and of a whole-byte run, failing.
HEADLESS_TEST(SegmentWrite, TellsFileErrors) {
  const Win32sScope scope;
  Bitmap bitmap(64, 2, 1, VIEW_TOP_FIRST, ORDER_RGB, nullptr, STORAGE_DISK);
  const auto statuses = [&](const Segments& segments) {
    std::vector<VnStatus> seen;
    WalkFailures(HEADLESS_FILE, [&](FailureRound& round) {
      WriteRow(bitmap, 0, Bytes(8, 0));
      seen.push_back(
          round.Run([&] { return PutSegments(bitmap, Bytes(8, 0xFF), 0, 0, segments); }));
      const Bytes row = ReadRow(bitmap, 0);
      // Pixels outside the run are never touched, whatever fails.
      for (int32_t x = 0; x < 64; ++x) {
        const bool inside = x >= segments[0] && x < segments[1];
        if (!inside) {
          ASSERT_EQ(PixelBits(row, static_cast<size_t>(x), 1), 0u);
        }
      }
    });
    return seen;
  };
  EXPECT_EQ(statuses({3, 21}), (std::vector<VnStatus>{ERR_FILE_SEEK, ERR_FILE_READ, ERR_FILE_SEEK,
                                                      ERR_FILE_WRITE, ERR_FILE_WRITE, ERR_FILE_READ,
                                                      ERR_FILE_SEEK, ERR_FILE_WRITE, OK}));
  EXPECT_EQ(statuses({8, 24}), (std::vector<VnStatus>{ERR_FILE_SEEK, ERR_FILE_WRITE, OK}));
}

// Every pixel inside the region is `value` afterwards, every other bit of the rows as before.
void ExpectFilled(BitmapHandle* bitmap, const std::vector<Bytes>& before, uint32_t value) {
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    Bytes expected = before[static_cast<size_t>(row)];
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      if (!Vn_IsPtInBitmapRgn(bitmap, row, x)) continue;
      SetPixelBits(&expected, static_cast<size_t>(x), bitmap->BitsPerPixel, value);
    }
    ASSERT_EQ(ReadRow(bitmap, static_cast<uint32_t>(row)), expected)
        << bitmap->BitsPerPixel << " bits, row " << row;
  }
}

std::vector<Bytes> Rows(BitmapHandle* bitmap) {
  std::vector<Bytes> rows;
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    rows.push_back(ReadRow(bitmap, static_cast<uint32_t>(row)));
  }
  return rows;
}

// An irregular region, or none.
void SetRegion(BitmapHandle* bitmap, int32_t kind) {
  const RECT box = {2, 1, 31, 13}, hole = {9, 4, 17, 9}, outside = {100, 100, 110, 110};
  if (kind == 0) return;
  if (kind == 2) {
    ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &outside, REGION_COMBINE_REPLACE), OK);
    return;
  }
  ASSERT_EQ(Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, REGION_COMBINE_REPLACE), OK);
  ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &hole, REGION_COMBINE_OLD_MINUS_NEW), OK);
}

void FillsWhatTheRegionSelects(int32_t storage) {
  Random random(52);
  for (const int32_t bits : kDepths) {
    for (int32_t kind = 0; kind < 3; ++kind) {
      SCOPED_TRACE(testing::Message() << bits << " bits, region " << kind);
      Bitmap bitmap(35, 15, bits, VIEW_TOP_FIRST, ORDER_BGR, nullptr, storage);
      SetRegion(bitmap, kind);
      FillRandom(bitmap, random);
      std::vector<Bytes> before = Rows(bitmap);
      ASSERT_EQ(Vn_ClearBitmap(bitmap), OK);
      ExpectFilled(bitmap, before, 0);
      FillRandom(bitmap, random);
      before = Rows(bitmap);
      ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(255, 255, 255)), OK);
      // White is all ones at every depth but 16 and 32 bits, where it leaves the idle bits clear,
      // and at 8 bits, where it is the last entry of the fixed palette.
      const uint32_t white = bits == 16 ? 0xFF7F : bits == 32 ? 0xFFFFFF00 : (1u << bits) - 1;
      ExpectFilled(bitmap, before, white);
      EXPECT_FALSE(bitmap->Flags & FLAG_LOCKED);
      if (testing::Test::HasFailure()) return;
    }
  }
}

TEST(Fill, FillsWhatTheRegionSelects) { FillsWhatTheRegionSelects(STORAGE_AUTO); }

HEADLESS_TEST(Fill, FillsWhatTheRegionSelectsOnWin32s) {
  const Win32sScope scope;
  FillsWhatTheRegionSelects(STORAGE_MEMORY);
  FillsWhatTheRegionSelects(STORAGE_DISK);
}

// Runs of all lengths at all places of wide rows, in a colour whose bytes differ.
TEST(Fill, LongRunsKeepThePixelsInStep) {
  Random random(54);
  for (const int32_t bits : kDepths) {
    for (int32_t i = 0; i < 12; ++i) {
      Bitmap bitmap(static_cast<uint32_t>(random.Between(200, 330)), 8, bits);
      for (int32_t n = 0; n < i; ++n) {
        const int32_t left = random.Between(0, 150), top = random.Between(0, 7);
        const RECT run = {left, top, left + random.Between(1, 180), top + 1};
        ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &run,
                                      n ? REGION_COMBINE_OR : REGION_COMBINE_REPLACE),
                  OK);
      }
      FillRandom(bitmap, random);
      const std::vector<Bytes> before = Rows(bitmap);
      ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(255, 0, 0)), OK);
      Bitmap pixel(1, 1, bits);
      ASSERT_EQ(Vn_PutPixelColor(pixel, 0, 0, RGB(255, 0, 0)), OK);
      Bytes value = ReadRow(pixel, 0);
      if (bits == 32) value[3] = 0;
      ExpectFilled(bitmap, before, PixelBits(value, 0, bits));
      if (testing::Test::HasFailure()) return;
    }
  }
}

TEST(Fill, ColourBytesFollowTheOrder) {
  for (const uint32_t order : {ORDER_RGB, ORDER_BGR}) {
    Bitmap bitmap(2, 2, 24, VIEW_TOP_FIRST, order);
    ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(1, 2, 3)), OK);
    EXPECT_EQ(Vn_GetPixelColor(bitmap, 1, 1), RGB(1, 2, 3));
    EXPECT_EQ(ReadRow(bitmap, 1)[0], order == ORDER_RGB ? 1 : 3);
  }
}

// Pixels one by one, side by side after scaling: more runs in a row than the reported maximum.
TEST(Fill, RowsOfManyRunsFit) {
  Bitmap bitmap(200, 2, 8);
  const RECT none = {0, 0, 0, 0};
  ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &none, REGION_COMBINE_REPLACE), OK);
  for (int32_t x = 1; x < 200; x += 2) {
    const RECT pixel = {x, 0, x + 1, 2};
    ASSERT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &pixel, REGION_COMBINE_OR), OK);
  }
  ASSERT_EQ(Vn_SizeBitmap(bitmap, 100, 2), OK);
  ASSERT_EQ(Vn_ClearBitmap(bitmap), OK);
  const std::vector<Bytes> before = Rows(bitmap);
  ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(255, 255, 255)), OK);
  ExpectFilled(bitmap, before, 255);
  uint32_t area = 0;
  ASSERT_EQ(Vn_GetBitmapRgnArea(bitmap, &area), OK);
  EXPECT_EQ(area, 200u);
}

TEST(Fill, MemoryIsOneUnitOfProgress) {
  for (int32_t kind = 0; kind < 3; ++kind) {
    Bitmap bitmap(35, 15, 8);
    SetRegion(bitmap, kind);
    const StatusLog log;
    EXPECT_EQ(Vn_FillBitmap(bitmap, 0), OK);
    EXPECT_EQ(log.percents(), (std::vector<int32_t>{0, 100}));
  }
  Bitmap bitmap(4, 4, 8);
  ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(255, 255, 255)), OK);
  {
    const StatusLog log(1, 0);
    EXPECT_EQ(Vn_ClearBitmap(bitmap), 0);
  }
  EXPECT_EQ(ReadRow(bitmap, 0), Bytes(4, 255));
  const StatusLog log(2, -40);
  EXPECT_EQ(Vn_ClearBitmap(bitmap), -40);  // after the last row
  EXPECT_EQ(ReadRow(bitmap, 3), Bytes(4, 0));
}

HEADLESS_TEST(Fill, FilesTellProgressByRows) {
  const Win32sScope scope;
  Bitmap bitmap(35, 15, 8, VIEW_TOP_FIRST, ORDER_RGB, nullptr, STORAGE_DISK);
  const auto rows = [&](int64_t count) {
    const StatusLog log;
    EXPECT_EQ(Vn_ClearBitmap(bitmap), OK);
    EXPECT_EQ(log.percents(), ExpectedPercents(count));
  };
  rows(15);
  SetRegion(bitmap, 1);
  RECT bounds;
  ASSERT_EQ(Vn_GetBitmapRgnBounds(bitmap, nullptr, &bounds), OK);
  rows(bounds.bottom - bounds.top);
  {
    const StatusLog log(4, 123);
    EXPECT_EQ(Vn_FillBitmap(bitmap, RGB(255, 255, 255)), 123);
  }
  // The first call came before the first row, so three rows of the region were written.
  const int32_t middle = (bounds.left + bounds.right) / 2;
  EXPECT_EQ(Vn_GetPixelColor(bitmap, bounds.top + 2, middle), RGB(255, 255, 255));
  EXPECT_EQ(Vn_GetPixelColor(bitmap, bounds.top + 3, bounds.left + 3), RGB(0, 0, 0));
  EXPECT_EQ(Vn_GetPixelColor(bitmap, bounds.bottom - 1, middle), RGB(0, 0, 0));
  SetRegion(bitmap, 2);
  const StatusLog log;
  EXPECT_EQ(Vn_FillBitmap(bitmap, 0), OK);  // nothing to do
  EXPECT_TRUE(log.percents().empty());
}

HEADLESS_TEST(Fill, FileErrorsDoNotShow) {
  const Win32sScope scope;
  Bitmap bitmap(35, 3, 8, VIEW_TOP_FIRST, ORDER_RGB, nullptr, STORAGE_DISK);
  WalkFailures(
      HEADLESS_FILE,
      [&](FailureRound& round) {
        EXPECT_EQ(round.Run([&] { return Vn_FillBitmap(bitmap, 0); }), OK);
      },
      6);
}

HEADLESS_TEST(Fill, MemoryFailsAtEveryAllocation) {
  EXPECT_EQ(Vn_FillBitmap(nullptr, 0), ERR_NO_BITMAP);
  EXPECT_EQ(Vn_ClearBitmap(nullptr), ERR_NO_BITMAP);
  Random random(53);
  Bitmap bitmap(35, 15, 8);
  SetRegion(bitmap, 1);
  FillRandom(bitmap, random);
  const Bytes before = ReadAll(bitmap);
  for (const bool clear : {false, true}) {
    WalkFailures(
        HEADLESS_MEMORY,
        [&](FailureRound& round) {
          const VnStatus status =
              round.Run([&] { return clear ? Vn_ClearBitmap(bitmap) : Vn_FillBitmap(bitmap, 0); });
          EXPECT_EQ(status, round.Failed() ? ERR_NO_MEMORY : OK);
          if (round.Failed() && !clear) {
            EXPECT_EQ(ReadAll(bitmap), before);
          }
        },
        2);
  }
}

}  // namespace
}  // namespace vn::test
