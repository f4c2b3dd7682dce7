// Colour spaces: known pixels, trips there and back, and equal results for any count.
#include <cstring>

#include "tests/support/bitmaps.h"

namespace vn::test {
namespace {

constexpr size_t kBytes[] = {3, 6, 4, 3, 3, 6, 3};

Bytes Convert(const Bytes& source, uint32_t from, uint32_t to) {
  const size_t count = source.size() / kBytes[from];
  Bytes target(count * kBytes[to]);
  EXPECT_EQ(
      Vn_ConvertColorSpace(source.data(), target.data(), static_cast<int32_t>(count), from, to),
      OK);
  return target;
}

Bytes Words(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values) {
    bytes.push_back(static_cast<uint8_t>(value));
    bytes.push_back(static_cast<uint8_t>(value >> 8));
  }
  return bytes;
}

// Blue, green, red.
Bytes Color(int red, int green, int blue) {
  return {static_cast<uint8_t>(blue), static_cast<uint8_t>(green), static_cast<uint8_t>(red)};
}

TEST(ColorSpace, KnownPixels) {
  EXPECT_EQ(Convert(Color(255, 255, 255), SPACE_BGR, SPACE_YIQ), Words({16384, 0, -81}));
  EXPECT_EQ(Convert(Words({16384, 0, 0}), SPACE_YUV, SPACE_BGR), Color(255, 255, 255));
  const Bytes yuv = Convert(Color(200, 100, 50), SPACE_BGR, SPACE_YUV);
  EXPECT_EQ(Convert(yuv, SPACE_YUV, SPACE_BGR), Color(199, 99, 49));
  EXPECT_EQ(Convert(Color(128, 128, 128), SPACE_BGR, SPACE_CMYK), (Bytes{0, 0, 0, 127}));
  EXPECT_EQ(Convert({200, 0, 0, 200}, SPACE_CMYK, SPACE_BGR), Color(0, 55, 55));
  EXPECT_EQ(Convert(Color(1, 2, 3), SPACE_BGR, SPACE_CMY), (Bytes{254, 253, 252}));
  EXPECT_EQ(Convert(Color(255, 0, 1), SPACE_BGR, SPACE_HSV), (Bytes{0, 255, 255}));
  EXPECT_EQ(Convert(Color(0, 255, 0), SPACE_BGR, SPACE_HSV), (Bytes{85, 255, 255}));
  EXPECT_EQ(Convert(Color(0, 0, 255), SPACE_BGR, SPACE_HLS), (Bytes{170, 127, 255}));
  EXPECT_EQ(Convert(Color(255, 0, 10), SPACE_BGR, SPACE_HLS), (Bytes{254, 127, 255}));
}

// What a trip through a space may cost a channel: nothing where bytes are complements, little where
// full scale is 16384, and up to a step of the hue circle where that has a byte: at its steepest
// the HSV hue moves a channel by 8.5 a degree, and a step is 1.4 degrees.
TEST(ColorSpace, ThereAndBack) {
  constexpr int kLoss[] = {0, 2, 0, 12, 8, 4, 0};
  Random random(5);
  Bytes colors(3 * 5000);
  random.Fill(colors.data(), colors.size());
  for (uint32_t space = 0; space < 7; ++space) {
    const Bytes back = Convert(Convert(colors, SPACE_BGR, space), space, SPACE_BGR);
    int worst = 0;
    for (size_t i = 0; i < colors.size(); ++i)
      worst = std::max(worst, std::abs(colors[i] - back[i]));
    EXPECT_LE(worst, kLoss[space]) << "space " << space;
  }
}

}  // namespace
}  // namespace vn::test
