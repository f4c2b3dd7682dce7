// Where the library stops: sizes that 32 bits cannot tell, records without pixels, regions that no
// longer fit, and arguments at their ends. Nothing outside of the pixels may be touched; the
// sanitizer build sees the first byte behind them.
#include <gtest/gtest.h>

#include "compose/row_segments.h"
#include "kernel/guards.h"
#include "region/region_motion.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/pixel_set.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

struct Size {
  uint32_t width, height;
  int32_t bits;
};

// By a bit or by a row beyond what is accepted.
constexpr Size kTooLarge[] = {{0x10000001, 1, 32}, {65536, 65537, 8},  {0x80000000, 1, 1},
                              {1, 0x80000000, 1},  {0xFFFFFFFF, 1, 1}, {0x08000000, 1, 32}};

TEST(Limits, SizesThatWrapGetNoPixels) {
  for (const Size& size : kTooLarge) {
    SCOPED_TRACE(Told(size.width, "x", size.height, "x", size.bits));
    BitmapHandle bitmap;
    EXPECT_EQ(Vn_InitBitmap(&bitmap, size.width, size.height, size.bits), OK);
    const VnStatus expected = bitmap.DataSize ? ERR_NO_MEMORY : ERR_EMPTY_BITMAP;
    for (const int32_t request : {STORAGE_AUTO, STORAGE_DISK, STORAGE_MEMORY})
      EXPECT_EQ(Vn_AllocateBitmap(&bitmap, request), expected);
    Bitmap source(4, 4, size.bits), result;
    EXPECT_EQ(Vn_DupBitmapNewDim(result, source, size.width, size.height, size.bits, DUP_ALLOCATE),
              expected);
    EXPECT_EQ(Vn_CopyBitmapRect(result, source, 0, 0, size.width, size.height), expected);
    EXPECT_FALSE(result->Flags & FLAG_ALLOCATED);
  }
  Bitmap wide(65536, 1, 8);
  for (const uint32_t height : {65536u, 65537u, 0x80000001u, 0u})
    EXPECT_EQ(Vn_ChangeBitmapHeight(wide, height), ERR_NO_MEMORY);
  EXPECT_EQ(wide->Height, 1);
}

// A stale handle can have the value of a living one.
TEST(Limits, RecordsWithoutPixelsAreLeftAlone) {
  WithEachStorage([](const StorageKind& kind) {
    Random random(81);
    Bitmap living(40, 9, 8, VIEW_TOP_FIRST, ORDER_BGR, nullptr, kind.request);
    FillRandom(living, random);
    const Bytes before = ReadAll(living);
    BitmapHandle ghost = *living.get(), huge;
    ghost.Flags = 0;
    Vn_InitBitmap(&huge, 0x10000001, 1, 32);
    const int32_t run[2] = {0, 4};
    for (BitmapHandle* record : {&ghost, &huge}) {
      const StatusLog log;
      EXPECT_EQ(Vn_FillBitmap(record, 0xFFFFFF), OK);
      EXPECT_EQ(Vn_ClearBitmap(record), OK);
      EXPECT_EQ(log.percents(), (std::vector<int32_t>{0, 100, 0, 100}));
      EXPECT_EQ(Vn_PutBitmapRowSegments(record, before.data(), 0, 0, run, 2), ERR_FILE_SEEK);
      EXPECT_EQ(Vn_PutBitmapRow(record, before.data(), 0, 4), ERR_NO_MEMORY);
      EXPECT_EQ(Vn_PutPixelColor(record, 0, 0, 0), ERR_NO_BITMAP);
    }
    EXPECT_EQ(ReadAll(living), before);
  });
}

TEST(Limits, WritersStayInsideTheRowsThatAreLeft) {
  WithEachStorage([](const StorageKind& kind) {
    Random random(82);
    for (const int32_t bits : kDepths) {
      Bitmap bitmap(64, 100, bits, VIEW_TOP_FIRST, ORDER_BGR, nullptr, kind.request);
      Select(bitmap, {3, 50, 60, 100});
      ASSERT_EQ(Vn_ChangeBitmapHeight(bitmap, 10), OK);
      FillRandom(bitmap, random);
      const Bytes before = ReadAll(bitmap), source(1024, 0xFF);
      EXPECT_EQ(Vn_FillBitmap(bitmap, 0x808080), OK);
      EXPECT_EQ(Vn_ClearBitmap(bitmap), OK);
      EXPECT_EQ(Vn_PutPixelColor(bitmap, 60, 5, 0), ERR_EMPTY_BITMAP);
      int32_t segments[8], count;
      ASSERT_EQ(Vn_GetBitmapClipSegments(bitmap, 60, segments, &count), OK);
      EXPECT_EQ(count, 2);  // the region stays as it is
      for (const uint32_t row : {60u, 0xFFFFFFFFu})
        EXPECT_EQ(Vn_PutBitmapRowSegments(bitmap, source.data(), row, 0, segments, count), OK);
      EXPECT_EQ(ReadAll(bitmap), before);
      // Runs that reach over the ends of the last row end with it.
      const int32_t runs[][3] = {{-100, 1000, 0},
                                 {8, 1000, 8},
                                 {0, INT32_MAX, -8},
                                 {INT32_MIN, INT32_MAX, -64},
                                 {0, 64, 64}};
      const BitmapLock lock(bitmap);
      for (const auto& run : runs)
        EXPECT_EQ(Vn_PutBitmapRowSegments(bitmap, source.data(), 9, run[2], run, 2), OK);
      Bytes expected = before;
      std::fill(expected.end() - bitmap->BytesPerLine, expected.end(), uint8_t{0xFF});
      EXPECT_EQ(ReadAll(bitmap), expected);
    }
  });
}

void ExpectInside(BitmapHandle* bitmap, int32_t width, int32_t height) {
  for (const RECT& rect : *bitmap->Region) {
    EXPECT_TRUE(rect.left >= 0 && rect.left < rect.right && rect.right <= width && rect.top >= 0 &&
                rect.top < rect.bottom && rect.bottom <= height)
        << Text(rect) << " in " << width << " x " << height;
  }
  const RECT& bounds = bitmap->Region->header.rcBound;
  EXPECT_TRUE(bounds.left >= 0 && bounds.right <= width && bounds.top >= 0 &&
              bounds.bottom <= height);
}

// Products wrap, and a picture of other rows than the region's is turned over.
HEADLESS_TEST(Limits, MotionsKeepRegionsInsideTheBitmap) {
  Random random(83);
  const int32_t sizes[] = {1, 2, 7, 1000, 40000, 80000, 1 << 20, 0x7FFFFFFF};
  const auto size = [&] { return random.OneOf(sizes); };
  for (int32_t round = 0; round < 400; ++round) {
    Plain bitmap(size(), size());
    SCOPED_TRACE(Told(bitmap->Width, "x", bitmap->Height));
    for (int32_t n = 0; n < 3; ++n) {
      const int32_t left = random.Between(0, bitmap->Width - 1);
      const int32_t top = random.Between(0, bitmap->Height - 1);
      Select(bitmap,
             {left, top, random.Between(left, bitmap->Width), random.Between(top, bitmap->Height)},
             n ? REGION_COMBINE_OR : REGION_COMBINE_REPLACE);
    }
    Plain copy(size(), size());
    ASSERT_EQ(CopyRegion(copy, bitmap, random.Between(INT32_MIN, INT32_MAX), size()), OK);
    ExpectInside(copy, copy->Width, copy->Height);
    const int32_t width = size(), height = size();
    ASSERT_EQ(ScaleRegion(bitmap, width, height), OK);
    ExpectInside(bitmap, width, height);
    bitmap->Width = size();
    bitmap->Height = size();
    ASSERT_EQ(round % 2 ? FlipRegion(bitmap) : ReverseRegion(bitmap), OK);
    if (width == bitmap->Width && height == bitmap->Height) {
      ExpectInside(bitmap, width, height);
    }
    // Whatever the record says, a row loop gets runs of its pixels alone.
    bitmap->BytesPerLine = 8;
    RowSegments runs(bitmap);
    if (!runs) continue;  // a bound of 2^31 columns asks for more than there is
    for (const int32_t row : {-1, 0, bitmap->Height - 1, bitmap->Height, INT32_MAX}) {
      runs.Load(row);
      if (row < 0 || row >= bitmap->Height) {
        EXPECT_EQ(runs.count(), 0);
      }
      for (int32_t i = 0; i < runs.count(); i += 2)
        EXPECT_TRUE(0 <= runs.data()[i] && runs.data()[i + 1] <= bitmap->Width);
    }
    if (testing::Test::HasFailure()) return;
  }
}

// A scan takes as many steps as the bitmap has rows, not the region, and finds what a list gives.
HEADLESS_TEST(Limits, ScansPassOverRowsThatDoNotShow) {
  Random random(84);
  const Region tall(CreateRectRgn(-3, INT32_MIN + 2, 17, INT32_MAX - 2)),
      hole(CreateRectRgn(5, 4, 9, 13));
  ASSERT_NE(CombineRgn(tall.get(), tall.get(), hole.get(), RGN_DIFF), RGN_ERROR);
  const int32_t factors[] = {1, 2, 3, 7, -1, 0, 1 << 20};
  for (int32_t round = 0; round < 60; ++round) {
    RegionTransform transform = {random.Between(0, 1) * 2, 1, 1, random.OneOf(factors), 1, 0, 0};
    transform.YScaleDenominator = factors[random.Between(0, 4)];
    transform.YOffset = random.Between(-40, 40);
    const RegionTransform* given = round ? &transform : nullptr;
    SCOPED_TRACE(
        Told(transform.YScaleNumerator, "/", transform.YScaleDenominator, "+", transform.YOffset));
    // Beyond the words a list's products wrap; a shape near the bitmap has none that do.
    const Region inside(CreateRectRgn(0, 0, 17, 30));
    const Region& shape = round % 2 ? tall : inside;
    Plain bitmap(20, 15);
    const auto select = [&] {
      EXPECT_EQ(Vn_SetBitmapRgnHandle(bitmap, given, shape.get(), REGION_COMBINE_REPLACE), OK);
      return PixelSet::Of(0, 20, bitmap.Rects());
    };
    const PixelSet listed = select();
    const Win32sScope win32s;
    const PixelSet scanned = select();
    if (round % 2 == 0) {
      EXPECT_TRUE(scanned == listed);
    }
    EXPECT_LE(bitmap.Rects().size(), 30u);
    Vn_FreeBitmapRgn(bitmap);
  }
}

// Up to the size at which 64 bits end, an ellipse has the area of one.
HEADLESS_TEST(Limits, LargeEllipsesAreRightOrRefused) {
  constexpr int32_t kLargest = 900000;
  const RECT most = {0, 0, kLargest + 1, kLargest + 1}, more = {0, 0, kLargest + 2, 100};
  const Region largest(CreateEllipticRgnIndirect(&most));
  ASSERT_TRUE(largest);
  double area = 0;
  for (const RECT& rect : RectsOf(largest.get()))
    area += static_cast<double>(rect.right - rect.left) * (rect.bottom - rect.top);
  EXPECT_NEAR(area / kLargest / kLargest, 0.785398, 0.00001);
  EXPECT_FALSE(Region(CreateEllipticRgnIndirect(&more)));
  EXPECT_FALSE(Region(CreateRoundRectRgn(0, 0, 5000000, 5000000, 10, kLargest + 1)));
}

TEST(Limits, ArgumentsThatStandForNothing) {
  ResizeState* state = nullptr;
  ASSERT_EQ(Vn_StartResize(-100000, 4, 6, 2, &state), OK);
  for (const int32_t bits : kDepths) {
    Bytes row(24, 0x5A);
    uint32_t width, count;
    Vn_Resize(row.data(), 1, bits, &width, &count, state);
    EXPECT_EQ(row, Bytes(24, 0x5A));
  }
  Vn_StopResize(state);

  uint32_t* table = Vn_CreateUserMatchTable(nullptr, 0);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(std::count(table, table + 32768, 0u), 32768);
  Vn_FreeUserMatchTable(table);

  // A rectangle beyond the source: what is not there is zero.
  Bitmap source(16, 2, 8), result;
  WriteRow(source, 1, Bytes(16, 7));
  ASSERT_EQ(Vn_CopyBitmapRect(result, source, 8, 1, 16, 2), OK);
  Bytes expected(32, 0);
  std::fill_n(expected.begin(), 8, uint8_t{7});
  EXPECT_EQ(ReadAll(result), expected);
}

}  // namespace
}  // namespace vn::test
