// Colour spaces: known pixels. Trips between all of them are in the numbered cases.
#include <cstring>

#include "tests/support/bitmaps.h"

namespace vn::test {
namespace {

constexpr size_t kBytes[] = {3, 6, 4, 3, 3, 6, 3};

Bytes Convert(const Bytes& source, uint32_t from, uint32_t to) {
  const size_t count = source.size() / kBytes[from];
  Bytes target(count * kBytes[to]);
  EXPECT_EQ(Vn_ConvertColorSpace(source.data(), target.data(), count, from, to), OK);
  return target;
}

Bytes Words(std::initializer_list<int> values) {
  Bytes bytes;
  for (const int value : values) {
    bytes.push_back(value);
    bytes.push_back(value >> 8);
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

}  // namespace
}  // namespace vn::test
