// Rotation by any angle, against a model that walks step by step.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tests/support/bitmaps.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

int32_t FixedSine(int32_t hundredths) {
  return static_cast<int32_t>(std::lround(16384 * std::sin(hundredths * std::numbers::pi / 18000)));
}

// A coordinate moved pixel by pixel, as the walk is defined.
struct Mover {
  int32_t whole, fraction;
  Mover(int32_t value, int32_t origin) : whole(value / 16384 + origin), fraction(value % 16384) {}
  void Move(int32_t step) {
    fraction += step;
    if (fraction >= 16384) {
      fraction -= 16384;
      ++whole;
    } else if (fraction <= -16384) {
      fraction += 16384;
      --whole;
    }
  }
};

struct Turned {
  int32_t width, height;
  Bytes bytes;  // rows whole, 0 behind their pixels
};

// `fill` is the pixel's value as it lies in a row.
Turned Model(BitmapHandle* bitmap, int32_t angle, bool resize, uint32_t fill) {
  int32_t a = static_cast<int32_t>(((-int64_t{angle}) % 36000 + 36000) % 36000);
  if (bitmap->ViewOrigin == VIEW_BOTTOM_FIRST) a = 36000 - a;
  const int32_t s = FixedSine(a), c = FixedSine(a + 9000);
  const int32_t w = bitmap->Width, h = bitmap->Height;
  Turned turned{w, h, {}};
  if (resize) {
    const int32_t cx = (w + 1) / 2, cy = (h + 1) / 2;
    std::vector<int32_t> xs, ys;
    for (const int32_t x : {-cx, w - 1 - cx}) {
      for (const int32_t y : {cy, cy - (h - 1)}) {
        xs.push_back((x * c - y * s) / 16384 + cx);
        ys.push_back(cy - (y * c + x * s) / 16384);
      }
    }
    turned.width =
        *std::max_element(xs.begin(), xs.end()) - *std::min_element(xs.begin(), xs.end()) + 1;
    turned.height =
        *std::max_element(ys.begin(), ys.end()) - *std::min_element(ys.begin(), ys.end()) + 1;
  }
  const int32_t bits = bitmap->BitsPerPixel;
  const int32_t dw = turned.width / 2, dh = turned.height / 2;
  const auto stride = static_cast<size_t>((turned.width * bits + 31) / 32 * 4);
  const Pixels source = StoredPixels(bitmap);
  Mover rowX(dh * s - dw * c, w / 2), rowY(-(dh * c + dw * s), h / 2);
  for (int32_t row = 0; row < turned.height; ++row) {
    Bytes line(stride);
    Mover x = rowX, y = rowY;
    for (int32_t column = 0; column < turned.width; ++column) {
      const bool inside = x.whole >= 0 && x.whole < w && y.whole >= 0 && y.whole < h;
      const auto sx = static_cast<size_t>(x.whole), sy = static_cast<size_t>(y.whole);
      SetPixelBits(&line, column, bits, inside ? source[sy][sx] : fill);
      x.Move(c);
      y.Move(s);
    }
    turned.bytes.insert(turned.bytes.end(), line.begin(), line.end());
    rowX.Move(-s);
    rowY.Move(c);
  }
  return turned;
}

// The colour around the picture, and its pixel as it lies in a row of blue, green, red.
constexpr COLORREF kAround = RGB(255, 255, 0);
uint32_t AroundPixel(BitmapHandle* bitmap) {
  constexpr uint32_t kPixels[] = {0, 0, 0xE07F, 0x00FFFF, 0x00FFFF00};
  return bitmap->BitsPerPixel > 8 ? kPixels[bitmap->BitsPerPixel / 8]
                                  : GetNearestPaletteIndex(bitmap->PaintPalette, kAround);
}

void ExpectAsModel(BitmapHandle* bitmap, int32_t angle, bool resize) {
  // The new record has the colour order of a new bitmap.
  const Turned expected = Model(bitmap, angle, resize, AroundPixel(bitmap));
  ASSERT_EQ(Vn_RotateBitmapFine(bitmap, angle, resize, kAround), OK);
  ASSERT_EQ(bitmap->Width, expected.width);
  ASSERT_EQ(bitmap->Height, expected.height);
  ASSERT_FALSE(bitmap->Flags & FLAG_LOCKED);
  ASSERT_TRUE(ReadAll(bitmap) == expected.bytes);
}

// An angle that no exact turn takes.
int32_t RandomAngle(Random& random) {
  // Small steps along one axis make coordinates that lag for long.
  int32_t angle = random.Chance(4) ? 9000 * random.Between(-5, 5) + random.Between(-60, 60)
                                   : random.Between(-100000, 100000);
  return angle % 9000 ? angle : angle + 1;
}

void RotateAnySizes(int32_t storage, int32_t rounds) {
  Random random(80 + static_cast<uint64_t>(storage));
  for (int32_t i = 0; i < rounds; ++i) {
    const int32_t bits = kDepths[i % 6], most = i % 5 ? 60 : 400;
    const int32_t width = random.Between(1, most), height = random.Between(1, most);
    RandomBitmap bitmap(random, width, height, bits, storage);
    int32_t angle = RandomAngle(random);
    bool resize = random.Chance(2);
    if (random.Chance(10) && width != height) {
      angle = random.Chance(2) ? 9000 : -9000;  // cut off, by the walk
      resize = false;
    }
    SCOPED_TRACE(Told(width, "by", height, ",", bits, "bits, by", angle, resize ? "grown" : ""));
    ASSERT_NO_FATAL_FAILURE(ExpectAsModel(bitmap, angle, resize));
  }
}

TEST(Rotate, PicksWhatTheWalkFinds) {
  WithEachVectorForm([] { RotateAnySizes(STORAGE_AUTO, 300); });
}

// Through one tile, through many, and without memory for any.
HEADLESS_TEST(Rotate, PicksTheSameInOtherStorage) {
  const Win32sScope scope;
  RotateAnySizes(STORAGE_MEMORY, 60);
  Random random(83);
  for (const int32_t bits : kDepths) {
    // One bit and 24 bits make several tiles.
    const bool tiles = bits == 1 || bits == 24;
    RandomBitmap bitmap(random, bits == 1 ? 5600 : 1200, tiles ? 300 : 40, bits, STORAGE_DISK);
    Headless_SetLargestBlock(tiles ? bitmap->DataSize / 2 : 5000);
    ExpectAsModel(bitmap, random.Between(100, 2000), true);
    Headless_SetLargestBlock(0);
    EXPECT_TRUE(bitmap->Flags & FLAG_ON_DISK);
  }
}

TEST(Rotate, FoldsAnglesAndTellsOfNoTurn) {
  Random random(84);
  for (const int32_t angle : {0, 36000, -72000}) {
    RandomBitmap bitmap(random, 9, 7, 8);
    const Bytes before = ReadAll(bitmap);
    uint8_t* const bits = bitmap->Bits;
    const StatusLog log;
    EXPECT_EQ(Vn_IntRotateBitmapFine(bitmap, angle, 1, 0, 20, 60), OK);
    EXPECT_EQ(Vn_IntRotateBitmapFine(bitmap, angle, 1, 0, 60, 60), OK);
    EXPECT_EQ(log.percents(), (std::vector<int32_t>{20, 60, 60}));
    EXPECT_EQ(ReadAll(bitmap), before);
    EXPECT_EQ(bitmap->Bits, bits);
    const StatusLog stopping(2, -5);
    EXPECT_EQ(Vn_IntRotateBitmapFine(bitmap, angle, 1, 0, 20, 60), -5);
  }
  // Whole degrees, and whole turns more.
  for (const int32_t degrees : {17, 90, 180, -90, INT32_MIN}) {
    RandomBitmap a(random, 40, 31, 24);
    Bitmap b;
    ASSERT_EQ(Vn_CopyBitmap(b, a), OK);
    const auto hundredths = static_cast<int32_t>(static_cast<uint32_t>(degrees) * 100);
    EXPECT_EQ(Vn_RotateBitmap(a, degrees, 1), OK);
    EXPECT_EQ(Vn_RotateBitmapFine(b, hundredths % 36000 - 36000, 1, 0), OK);
    EXPECT_TRUE(ReadAll(a) == ReadAll(b));
  }
}

// Percentages that run backward wrap, but come out where they should.
TEST(Rotate, TellsAnyRangeOfProgress) {
  Bitmap bitmap(60, 70, 8);
  const StatusLog log;
  EXPECT_EQ(Vn_IntRotateBitmapFine(bitmap, 1730, 0, 0, INT32_MAX, INT32_MIN + 9), OK);
  EXPECT_EQ(Vn_IntRotateBitmapFine(bitmap, 1730, 0, 0, 70, 0), OK);
  EXPECT_EQ(log.percents().back(), 0);
}

TEST(Rotate, TakesTheRegionAlong) {
  Random random(86);
  for (int32_t i = 0; i < 20; ++i) {
    Bitmap bitmap(50, 41, 24, i & 1 ? VIEW_TOP_FIRST : VIEW_BOTTOM_FIRST);
    MarkRegion(bitmap, {3, 5, 30, 41});
    ASSERT_EQ(Vn_RotateBitmapFine(bitmap, RandomAngle(random), 1, 0), OK);
    ExpectRegionOnMark(bitmap);
  }
}

}  // namespace
}  // namespace vn::test
