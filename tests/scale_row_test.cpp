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
  ScaleRow(s.bits, static_cast<uint32_t>(destination.size()), s.start, s.quotient, s.accumulator,
           s.remainder, source.data(), destination.data(), s.count, s.divisor, s.expand);
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
    const uint32_t divisor = divisors[random.Between(0, 7)];
    const auto upTo = [&](uint32_t most) {
      return static_cast<uint32_t>(random.Between(0, static_cast<int32_t>(most)));
    };
    const uint32_t most = divisor ? std::min(divisor, 0x3FFFFFFFu) : 3;
    Check({kDepths[upTo(5)], upTo(20), upTo(3), upTo(most), upTo(most), 1 + upTo(89), divisor,
           random.Between(0, 1)},
          random);
  }
}

}  // namespace
}  // namespace vn::test
