// Vn_ConvertBuffer against a model that decodes and encodes single pixels.
#include <cstring>

#include "tests/support/slow_color.h"

namespace vn::test {
namespace {

constexpr uint32_t kCodes[] = {BPP_GRAY, 1, 4, 8, 16, 24, 32};

struct Conversion {
  uint32_t width, srcBits, dstBits, srcOrder, dstOrder;
  const RGBQUAD* srcColors;
  const RGBQUAD* dstColors;

  VnStatus Run(Bytes& row) const {
    return Vn_ConvertBuffer(row.data(), width, srcBits, dstBits, srcOrder, dstOrder, srcColors,
                            dstColors);
  }
  // As small as the library lets a caller make it, so that an access beyond is caught.
  size_t Size() const { return Vn_CalcConvertSize(width, srcBits, width, dstBits); }
};

const RGBQUAD* TableOf(uint32_t bits, const RGBQUAD* colors) {
  return bits >= 1 && bits <= 8 && !colors ? Vn_IntGetFixedPalette(bits) : colors;
}

// The new value of pixel `x`, written into `after`.
void ConvertSlowly(const Conversion& c, const Bytes& before, Bytes& after, size_t x) {
  const RGBQUAD* from = TableOf(c.srcBits, c.srcColors);
  const RGBQUAD* to = TableOf(c.dstBits, c.dstColors);
  const SlowColor color = SlowPixel(before, x, c.srcBits, c.srcOrder, from);
  if (c.dstBits == 0) {
    after[x] = static_cast<uint8_t>(c.srcBits == 0 ? color.red : SlowGray(color));
  } else if (c.dstBits <= 8) {
    uint32_t index = SlowMatch(to, 1u << c.dstBits, color);
    // Equal tables carry their indexes over, doubles too.
    if (c.srcBits >= 1 && c.srcBits <= c.dstBits &&
        std::memcmp(from, to, sizeof(RGBQUAD) << c.srcBits) == 0) {
      index = PixelBits(before, x, c.srcBits);
    }
    SetPixelBits(&after, x, c.dstBits, index);
  } else if (c.srcBits != c.dstBits) {
    SetSlowPixel(after, x, c.dstBits, c.dstOrder, color);
  } else if (c.srcOrder != c.dstOrder) {
    // What carries nothing stays at 32 bits and becomes 0 at 16.
    const uint8_t fourth = before[4 * x * (c.srcBits == 32) + 3];
    SetSlowPixel(after, x, c.dstBits, c.dstOrder, color);
    if (c.dstBits == 32) after[4 * x + 3] = fourth;
  }
}

void Check(const Conversion& c, Random& random) {
  Bytes before(std::max<size_t>(c.Size(), 4));
  random.Fill(before.data(), before.size());
  Bytes expected = before, row = before;
  for (size_t x = 0; x < c.width; ++x)
    ConvertSlowly(c, before, expected, x);
  ASSERT_EQ(c.Run(row), OK);
  // The whole buffer: bits of a last byte and bytes beyond the new row keep what they held.
  ASSERT_EQ(row, expected) << c.width << " pixels, orders " << c.srcOrder << c.dstOrder;
}

class EachPair : public testing::TestWithParam<std::tuple<uint32_t, uint32_t>> {};

TEST_P(EachPair, EqualsTheSlowModelInPlace) {
  const auto [srcBits, dstBits] = GetParam();
  Random random(srcBits * 100 + dstBits);
  Colors srcColors = RandomColors(random, 256);
  Colors dstColors = RandomColors(random, 256);
  Colors crowded = CrowdedColors(random, 256);
  for (RGBQUAD& color : dstColors)
    color.rgbReserved = static_cast<BYTE>(random.Next());
  const RGBQUAD* tables[][2] = {{nullptr, nullptr},
                                {srcColors.data(), dstColors.data()},
                                {srcColors.data(), srcColors.data()},
                                {dstColors.data(), crowded.data()},
                                {crowded.data(), nullptr}};
  for (const uint32_t width : {1, 2, 3, 5, 7, 8, 9, 16, 19, 31, 48, 67, 255, 256, 257, 523}) {
    for (const uint32_t orders : {0, 1, 2, 3}) {
      for (const auto& [from, to] : tables) {
        ASSERT_NO_FATAL_FAILURE(
            Check({width, srcBits, dstBits, orders & 1, orders >> 1, from, to}, random));
      }
    }
  }
  // Several blocks of the work in place.
  for (const uint32_t width : {2900, 4509})
    ASSERT_NO_FATAL_FAILURE(Check({width, srcBits, dstBits, 1, 0, nullptr, nullptr}, random));
}

INSTANTIATE_TEST_SUITE_P(Convert, EachPair,
                         testing::Combine(testing::ValuesIn(kCodes), testing::ValuesIn(kCodes)),
                         [](const auto& pair) {
                           return std::to_string(std::get<0>(pair.param)) + "to" +
                                  std::to_string(std::get<1>(pair.param));
                         });

TEST(Convert, RefusedArgumentsLeaveTheBufferAlone) {
  const Conversion refused[] = {
      {0, 24, 32, 1, 1, nullptr, nullptr},         {8, 2, 8, 1, 1, nullptr, nullptr},
      {8, 0xFFFFFFF8u, 8, 1, 1, nullptr, nullptr}, {8, 8, 0x80000000u, 1, 1, nullptr, nullptr},
      {8, 24, 8, 2, 1, nullptr, nullptr},          {8, 24, 24, 1, 2, nullptr, nullptr},
      {0x80000000u, 24, 7, 1, 1, nullptr, nullptr}};
  Bytes row(64, 9);
  for (const Conversion& c : refused)
    EXPECT_EQ(c.Run(row), ERR_INVALID_PARAMETER);
  // A width below 0 is no work, and orders count only where pixels have one.
  EXPECT_EQ((Conversion{~0u, 24, 32, 1, 0, nullptr, nullptr}.Run(row)), OK);
  EXPECT_EQ(row, Bytes(64, 9));
  EXPECT_EQ((Conversion{8, 8, 4, 7, 7, nullptr, nullptr}.Run(row)), OK);
}

TEST(Convert, SizesTakeTheMixedTerm) {
  EXPECT_EQ(Vn_CalcConvertSize(100, 0, 100, 24), 300u);
  EXPECT_EQ(Vn_CalcConvertSize(10, 24, 100, 1), 300u);
  EXPECT_EQ(Vn_CalcConvertSize(100, 1, 10, 32), 40u);
  EXPECT_EQ(Vn_CalcConvertSize(100, 8, 10, 0), 100u);
}

}  // namespace
}  // namespace vn::test
