// ScaleRow against its rule, one pixel at a time.
#include "geometry/scale_row.h"

#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/pixels.h"

namespace vn::test {
namespace {

struct Scaling {
  int32_t bits;
  uint32_t start, quotient, accumulator, remainder, count, divisor;
  int32_t expand;

  // Source pixels, counted from the first byte that is handed over.
  std::vector<uint32_t> Positions() const {
    const bool packed = bits < 8;
    uint32_t p = packed ? start % (8 / static_cast<uint32_t>(bits)) : 0, a = accumulator;
    std::vector<uint32_t> positions;
    for (uint32_t d = 0; d < count; ++d) {
      positions.push_back(p);
      if (!(packed && expand)) p += quotient;
      a += remainder;
      if (divisor <= a) a -= divisor, ++p;
    }
    return positions;
  }
  void Run(const Bytes& source, Bytes& destination, uint32_t rowBytes) const {
    ScaleRow(bits, rowBytes, start, quotient, accumulator, remainder, source.data(),
             destination.data(), count, divisor, expand);
  }
};

size_t BytesOf(size_t pixels, int32_t bits) { return (pixels * static_cast<size_t>(bits) + 7) / 8; }

// The row buffers are exactly as long as the pixels used, so that any access beyond is caught.
void Check(const Scaling& s, Random& random) {
  SCOPED_TRACE(testing::Message() << s.bits << " bits, " << s.count << " pixels from " << s.start
                                  << ", steps " << s.quotient << " + (" << s.accumulator << ") "
                                  << s.remainder << "/" << s.divisor << ", expand " << s.expand);
  const std::vector<uint32_t> positions = s.Positions();
  const uint32_t end = positions.empty() ? 0 : positions.back() + 1;
  Bytes source(BytesOf(end, s.bits));
  random.Fill(source.data(), source.size());
  Bytes destination(BytesOf(s.count, s.bits));
  random.Fill(destination.data(), destination.size());
  Bytes expected = destination;
  // Up to 4 bits the bits behind the last pixel become 0.
  if (s.bits < 8 && !expected.empty()) expected.back() = 0;
  for (size_t d = 0; d < positions.size(); ++d) {
    SetPixelBits(&expected, d, s.bits, PixelBits(source, positions[d], s.bits));
  }
  s.Run(source, destination, static_cast<uint32_t>(destination.size()));
  ASSERT_EQ(destination, expected);
}

TEST(ScaleRow, FollowsTheRuleForSizes) {
  Random random(1);
  for (int round = 0; round < 6000; ++round) {
    const auto from = static_cast<uint32_t>(random.Between(1, 200));
    const auto to = static_cast<uint32_t>(random.Between(1, 200));
    Scaling s{kDepths[random.Between(0, 5)],
              static_cast<uint32_t>(random.Between(0, 20)),
              from / to,
              0,
              from % to,
              static_cast<uint32_t>(random.Between(0, 200)),
              to,
              to >= from};
    // As painting does within a destination: from a column on, with an accumulator.
    s.accumulator = static_cast<uint32_t>(random.Between(0, static_cast<int32_t>(to) - 1));
    if (from == to) s.quotient = 0, s.remainder = to;
    Check(s, random);
  }
}

// Divisors near the end of the words, accumulators at and above the divisor, divisor 0.
TEST(ScaleRow, FollowsTheRuleForAnyWords) {
  Random random(2);
  const uint32_t divisors[] = {0, 1, 2, 7, 0x7FFFFFFF, 0x40000000, 0x3FFFFFF, 0x5555555};
  for (int round = 0; round < 3000; ++round) {
    Scaling s{kDepths[random.Between(0, 5)],
              static_cast<uint32_t>(random.Between(0, 20)),
              static_cast<uint32_t>(random.Between(0, 3)),
              0,
              0,
              static_cast<uint32_t>(random.Between(1, 90)),
              divisors[random.Between(0, 7)],
              random.Between(0, 1)};
    const int32_t most = s.divisor ? static_cast<int32_t>(std::min(s.divisor, 0x3FFFFFFFu)) : 3;
    s.accumulator = static_cast<uint32_t>(random.Between(0, most));
    s.remainder = static_cast<uint32_t>(random.Between(0, most));
    Check(s, random);
  }
}

TEST(ScaleRow, PicksTheFirstPixelOfEachCell) {
  const Bytes source = {10, 20, 30};
  Bytes destination(7);
  ScaleRow(8, 7, 0, 0, 0, 3, source.data(), destination.data(), 7, 7, 1);
  EXPECT_EQ(destination, (Bytes{10, 10, 10, 20, 20, 30, 30}));
}

// The resizer shrinks rows of whole bytes within one buffer.
TEST(ScaleRow, ShrinksInPlace) {
  Random random(3);
  for (int round = 0; round < 1500; ++round) {
    const auto from = static_cast<uint32_t>(random.Between(1, 150));
    const auto to = static_cast<uint32_t>(random.Between(1, static_cast<int32_t>(from)));
    const int32_t bits = kDepths[random.Between(2, 5)];
    const Scaling s{bits, 0, from / to, 0, from % to, to, to, 0};
    Bytes row(BytesOf(from, bits));
    random.Fill(row.data(), row.size());
    Bytes apart(BytesOf(to, bits));
    s.Run(row, apart, 0);
    s.Run(row, row, 0);
    row.resize(apart.size());
    ASSERT_EQ(row, apart) << bits << " bits, " << from << " to " << to;
  }
}

TEST(ScaleRow, TouchesNothingElse) {
  const Bytes source(64, 0xFF);
  Bytes destination(8, 0x11);
  ScaleRow(2, 8, 0, 1, 0, 0, source.data(), destination.data(), 8, 8, 0);
  EXPECT_EQ(destination, Bytes(8, 0x11)) << "a depth that does not exist";
  ScaleRow(1, 2, 0, 0, 0, 1, source.data(), destination.data(), 20, 20, 1);
  EXPECT_EQ(destination, (Bytes{0xFF, 0xFF, 0xF1, 0x11, 0x11, 0x11, 0x11, 0x11}))
      << "bits behind rowBytes are set, not cleared";
  ScaleRow(1, 4, 0, 0, 0, 1, source.data(), destination.data(), 0, 20, 1);
  EXPECT_EQ(destination, (Bytes{0, 0, 0, 0, 0x11, 0x11, 0x11, 0x11})) << "a row of no pixels";
}

}  // namespace
}  // namespace vn::test
