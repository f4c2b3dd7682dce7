// Segment writes against a model that sets one pixel at a time; fill and clear through regions.
#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

using Segments = std::vector<int32_t>;

VnStatus PutSegments(BitmapHandle* bitmap, const Bytes& source, uint32_t row, int32_t offset,
                     const Segments& segments) {
  const int32_t state = Vn_LockBitmap(bitmap);
  const VnStatus status =
      Vn_PutBitmapRowSegments(bitmap, source.data(), row, offset, segments.data(), segments.size());
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

TEST(SegmentWrite, EqualsSinglePixels) {
  WithEachStorage([](const StorageKind& kind) {
    Random random(51);
    for (int32_t i = 0; i < 500; ++i) {
      const int32_t bits = kDepths[i % 6];
      const int32_t width = random.Between(1, 70);
      RandomBitmap bitmap(random, width, 3, bits, kind.request);
      Bytes source(bitmap->BytesPerLine + 16);
      random.Fill(source.data(), source.size());
      const int32_t unit = bits == 1 ? 8 : bits == 4 ? 2 : 1;
      const int32_t offset = random.Between(-width / unit / 2, width / unit / 2) * unit;
      const Segments segments =
          RandomSegments(random, std::max(0, -offset), std::min(width, width - offset));
      SCOPED_TRACE(
          Told(bits, "bits, offset", offset, ", segments", testing::PrintToString(segments)));
      std::vector<Bytes> expected = ReadRows(bitmap);
      for (size_t s = 0; s < segments.size(); s += 2) {
        for (int32_t c = segments[s]; c < segments[s + 1]; ++c) {
          SetPixelBits(&expected[1], c + offset, bits, PixelBits(source, c, bits));
        }
      }
      ASSERT_EQ(PutSegments(bitmap, source, 1, offset, segments), OK);
      ASSERT_EQ(ReadRows(bitmap), expected);
    }
  });
}

// No region, an irregular one, one outside of the bitmap, or long runs.
void SetRegion(BitmapHandle* bitmap, int32_t kind) {
  if (kind == 1) {
    SelectEllipse(bitmap, {2, 1, 31, 13});
    Select(bitmap, {9, 4, 17, 9}, REGION_COMBINE_OLD_MINUS_NEW);
  }
  if (kind >= 2) Select(bitmap, {100, 100, 110, 110});
  Random random(54);
  for (int32_t n = 0; kind == 3 && n < 20; ++n) {
    const int32_t left = random.Between(0, 150), top = random.Between(0, 14);
    Select(bitmap, {left, top, left + random.Between(1, 180), top + 1}, REGION_COMBINE_OR);
  }
}

// After `fill` every pixel inside the region is `value`, every other bit of the rows as before.
template <class Fill>
void ExpectFilled(BitmapHandle* bitmap, uint32_t value, Fill fill) {
  Random random(52);
  FillRandom(bitmap, random);
  std::vector<Bytes> expected = ReadRows(bitmap);
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      if (!Vn_IsPtInBitmapRgn(bitmap, row, x)) continue;
      SetPixelBits(&expected[row], x, bitmap->BitsPerPixel, value);
    }
  }
  ASSERT_EQ(fill(), OK);
  ASSERT_EQ(ReadRows(bitmap), expected);
}

// In a colour whose bytes differ.
TEST(Fill, FillsWhatTheRegionSelects) {
  WithEachStorage([](const StorageKind& storage) {
    for (const int32_t bits : kDepths) {
      for (int32_t kind = 0; kind < 4; ++kind) {
        SCOPED_TRACE(Told(bits, "bits, region", kind));
        const uint32_t order = kind % 2 ? ORDER_RGB : ORDER_BGR;
        Bitmap bitmap(kind == 3 ? 301 : 35, 15, bits, VIEW_TOP_FIRST, order, nullptr,
                      storage.request);
        Bitmap pixel(1, 1, bits, VIEW_TOP_FIRST, order);
        ASSERT_EQ(Vn_PutPixelColor(pixel, 0, 0, RGB(255, 0, 0)), OK);
        Bytes value = ReadRow(pixel, 0);
        if (bits == 32) value[3] = 0;
        SetRegion(bitmap, kind);
        ExpectFilled(bitmap, 0, [&] { return Vn_ClearBitmap(bitmap); });
        ExpectFilled(bitmap, PixelBits(value, 0, bits),
                     [&] { return Vn_FillBitmap(bitmap, RGB(255, 0, 0)); });
        EXPECT_FALSE(bitmap->Flags & FLAG_LOCKED);
        if (testing::Test::HasFailure()) return;
      }
    }
  });
}

// Pixels of 4 bits share a byte, and each colour fills both halves.
TEST(Fill, FourBitsTakeTheNearestOfAllColours) {
  Bitmap bitmap(7, 2, 4);
  for (const COLORREF color : {RGB(0, 0, 0), RGB(255, 255, 0), RGB(0, 120, 0), RGB(190, 190, 190),
                               RGB(3, 3, 250), RGB(255, 255, 255)}) {
    const UINT index = GetNearestPaletteIndex(bitmap->PaintPalette, color);
    ExpectFilled(bitmap, index, [&] { return Vn_FillBitmap(bitmap, color); });
  }
}

TEST(Fill, MemoryIsOneUnitOfProgress) {
  Bitmap bitmap(4, 4, 8);
  {
    const StatusLog log(1, 0);
    EXPECT_EQ(Vn_FillBitmap(bitmap, RGB(255, 255, 255)), 0);
  }
  ASSERT_EQ(Vn_FillBitmap(bitmap, RGB(255, 255, 255)), OK);
  const StatusLog log(2, -40);
  EXPECT_EQ(Vn_ClearBitmap(bitmap), -40);  // after the last row
  EXPECT_EQ(log.percents(), (std::vector<int32_t>{0, 100}));
  EXPECT_EQ(ReadRow(bitmap, 3), Bytes(4, 0));
}

HEADLESS_TEST(Fill, FilesTellProgressByRows) {
  const Win32sScope scope;
  Bitmap bitmap(35, 15, 8, VIEW_TOP_FIRST, ORDER_RGB, nullptr, STORAGE_DISK);
  const int64_t rows[] = {15, 11, 0};
  for (int32_t kind = 0; kind < 3; ++kind) {
    SetRegion(bitmap, kind);
    const StatusLog log;
    EXPECT_EQ(Vn_ClearBitmap(bitmap), OK);
    EXPECT_EQ(log.percents(), rows[kind] ? ExpectedPercents(rows[kind]) : std::vector<int32_t>());
  }
}

}  // namespace
}  // namespace vn::test
