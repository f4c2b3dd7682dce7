// Halftones against a model of single pixels on an independent lattice.
#include <cmath>

#include "color/threshold_matrices.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/slow_color.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

int Threshold(uint32_t type, int64_t u, int64_t v) {
  const auto row = static_cast<size_t>(v & 7), column = static_cast<size_t>(u & 7);
  return type == HALFTONE_CLUSTERED ? ClusteredMatrix[row][column] : OrderedMatrix[row][column];
}

// The pixel of a row whose gray decides over pixel x: itself, but for the odd reading of nibbles.
size_t DecidingPixel(size_t x, int32_t bits) {
  static constexpr size_t kNibbles[] = {0, 0, 1, 3, 4, 4, 5, 7};
  return bits == 4 ? x / 8 * 8 + kNibbles[x % 8] : x;
}

int SlowGrayAt(BitmapHandle* bitmap, const Bytes& row, size_t x, const RGBQUAD* colors) {
  return SlowGray(SlowPixel(row, DecidingPixel(x, bitmap->BitsPerPixel),
                            static_cast<uint32_t>(bitmap->BitsPerPixel), bitmap->ColorOrder,
                            colors));
}

// A whole number and a fraction of one, stepped as the lattice is: the carry leaves fractions of
// either sign.
struct Walk {
  int64_t whole = 0;
  int32_t fraction = 0;
  void Add(int32_t step) {
    fraction += step;
    const int32_t carry = fraction >= 16384 ? 1 : fraction <= -16384 ? -1 : 0;
    whole += carry;
    fraction -= carry * 16384;
  }
};

std::vector<uint32_t> SlowHalftone(BitmapHandle* bitmap, uint32_t type, int32_t angle,
                                   const RGBQUAD* colors) {
  const double turn = std::fmod(-angle / 100.0, 360.0) * std::acos(-1.0) / 180.0;
  const auto sine = static_cast<int32_t>(std::lround(16384 * std::sin(turn)));
  const auto cosine = static_cast<int32_t>(std::lround(16384 * std::cos(turn)));
  std::vector<uint32_t> pixels;
  Walk rowU, rowV;
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    const Bytes row = ReadRow(bitmap, static_cast<uint32_t>(y));
    Walk u = rowU, v = rowV;
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      const int gray = SlowGrayAt(bitmap, row, static_cast<size_t>(x), colors);
      pixels.push_back(gray > Threshold(type, u.whole, v.whole));
      u.Add(cosine);
      v.Add(sine);
    }
    rowU.Add(-sine);
    rowV.Add(cosine);
  }
  return pixels;
}

TEST(Halftone, EqualsTheSlowModel) {
  Random random(11);
  const Colors colors = RandomColors(random, 256);
  for (const int32_t bits : kDepths) {
    for (const uint32_t type : {HALFTONE_CLUSTERED, HALFTONE_ORDERED}) {
      for (const int32_t angle : {0, 36000, 4500, -4500, 1733, 9000, 30001, -100000}) {
        Bitmap bitmap(37, 21, bits, VIEW_BOTTOM_FIRST, ORDER_RGB, colors.data());
        FillRandom(bitmap, random);
        const std::vector<uint32_t> expected = SlowHalftone(bitmap, type, angle, colors.data());
        ASSERT_EQ(
            angle ? Vn_HalfToneBitmapExt(bitmap, type, angle) : Vn_HalfToneBitmap(bitmap, type),
            OK);
        ASSERT_EQ(bitmap->BitsPerPixel, 1);
        std::vector<uint32_t> pixels;
        for (uint32_t y = 0; y < 21; ++y) {
          const std::vector<uint32_t> row = RowPixels(ReadRow(bitmap, y), 37, 1);
          pixels.insert(pixels.end(), row.begin(), row.end());
        }
        ASSERT_EQ(pixels, expected) << bits << " bits, angle " << angle;
      }
    }
  }
}

HEADLESS_TEST(Halftone, LeavesTheBitmapOnEveryFailure) {
  const Bytes pixels(36, 55);
  Bitmap bitmap(12, 30, 24);
  WriteRow(bitmap, 0, pixels);
  {
    StatusLog log(10);
    EXPECT_EQ(Vn_HalfToneBitmap(bitmap, 1), 77);
  }
  EXPECT_EQ(ReadRow(bitmap, 0), pixels);
  WalkFailures(HEADLESS_MEMORY, [&](FailureRound& round) {
    Bitmap victim(12, 1, 24);
    WriteRow(victim, 0, pixels);
    const VnStatus status = round.Run([&] { return Vn_HalfToneBitmapExt(victim, 1, 4500); });
    if (status == OK) return;
    EXPECT_EQ(status, ERR_NO_MEMORY);
    EXPECT_EQ(ReadRow(victim, 0), pixels);
  });
}

}  // namespace
}  // namespace vn::test
