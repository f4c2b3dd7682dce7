// Combining bitmaps, against a model that works on one pixel at a time: all flag words, all depths,
// both vector forms, regions, overlaps, storage kinds.
#include <gtest/gtest.h>

#include "tests/support/bitmaps.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

// What an operation makes of a destination and a source bit that may be constants.
bool BitOf(uint32_t flags, bool d, bool s) {
  const auto operand = [](uint32_t kind, bool bit) {
    return kind < 2 ? bit != (kind == 1) : kind == 3;
  };
  s = operand(flags & 15, s);
  d = operand(flags >> 4 & 15, d);
  static constexpr bool (*kBits[])(bool, bool) = {
      [](bool a, bool b) { return a && b; },  [](bool a, bool b) { return a || b; },
      [](bool a, bool b) { return a != b; },  [](bool a, bool b) { return a || b; },
      [](bool a, bool b) { return a && !b; }, [](bool a, bool b) { return b && !a; },
      [](bool a, bool b) { return a && b; },  [](bool a, bool) { return a; },
      [](bool, bool b) { return b; },         [](bool a, bool b) { return a || b; },
      [](bool a, bool b) { return a && b; },  [](bool a, bool b) { return a || b; }};
  return operand(flags >> 12, kBits[flags >> 8 & 15](d, s));
}

bool IsDivision(uint32_t flags) { return (flags >> 8 & 15) == 7 || (flags >> 8 & 15) == 8; }

struct Needs {
  bool source, destination, boolean;
};
Needs NeedsOf(uint32_t flags, int32_t bits) {
  const auto at = [&](bool d, bool s) { return BitOf(flags, d, s); };
  const bool source = at(false, false) != at(false, true) || at(true, false) != at(true, true);
  const bool destination = at(false, false) != at(true, false) || at(false, true) != at(true, true);
  if (bits == 1 || (flags >> 8 & 15) <= 2 || !(source || destination)) {
    return {source, destination, true};
  }
  if (IsDivision(flags)) return {true, true, false};
  return {source, destination, !(source && destination)};
}

uint32_t ChannelOf(uint32_t operation, uint32_t d, uint32_t s, uint32_t m) {
  switch (operation) {
    case 3:
      return std::min(d + s, m);
    case 4:
      return d > s ? d - s : 0;
    case 5:
      return s > d ? s - d : 0;
    case 6:
      return d * s / m;
    case 7:
      return s ? std::min(d * m / s, m) : m;
    case 8:
      return d ? std::min(s * m / d, m) : m;
    case 9:
      return (d + s) / 2;
    case 10:
      return std::min(d, s);
    default:
      return std::max(d, s);
  }
}

// A pixel as PixelBits tells it: at 16 bits the low byte of the word comes first.
uint32_t ModelPixel(uint32_t flags, uint32_t d, uint32_t s, int32_t bits) {
  const uint32_t all = bits == 32 ? 0xFFFFFFFF : (1u << bits) - 1;
  const Needs needs = NeedsOf(flags, bits);
  uint32_t result = 0;
  if (needs.boolean) {
    for (int32_t bit = 0; bit < bits; ++bit)
      result |= uint32_t{BitOf(flags, d >> bit & 1, s >> bit & 1)} << bit;
    return result;
  }
  if ((flags & 15) == 1) s = ~s & all;
  if ((flags >> 4 & 15) == 1) d = ~d & all;
  const auto swapped = [](uint32_t word) { return word >> 8 | (word & 255) << 8; };
  if (bits == 16) d = swapped(d), s = swapped(s);
  const int32_t channel = bits == 16 ? 5 : std::min(bits, 8);
  const uint32_t m = (1u << channel) - 1;
  for (int32_t at = 0; at + channel <= bits; at += channel)
    result |= ChannelOf(flags >> 8 & 15, d >> at & m, s >> at & m, m) << at;
  if (bits == 16) result = swapped(result);
  return flags >> 12 == 1 ? ~result & all : result;
}

struct Placing {
  int32_t x, y, width, height, sourceX, sourceY;
};

// Whole rows as they must be afterwards. Pixels outside of either bitmap's bounds take no part.
std::vector<Bytes> Model(BitmapHandle* destination, const Placing& p, BitmapHandle* source,
                         uint32_t flags) {
  const int32_t bits = destination->BitsPerPixel;
  const bool usesSource = NeedsOf(flags, bits).source;
  std::vector<Bytes> rows = ReadRows(destination);
  const Pixels pixels = usesSource ? StoredPixels(source) : Pixels();
  RECT bounds{};
  if (usesSource) Vn_GetBitmapRgnBounds(source, nullptr, &bounds);
  for (int32_t j = 0; j < p.height; ++j) {
    for (int32_t i = 0; i < p.width; ++i) {
      const int32_t x = p.x + i, y = p.y + j, sx = p.sourceX + i, sy = p.sourceY + j;
      if (!Vn_IsPtInBitmapRgn(destination, y, x)) continue;
      if (usesSource &&
          (sx < bounds.left || sx >= bounds.right || sy < bounds.top || sy >= bounds.bottom))
        continue;
      const auto row = static_cast<size_t>(y), column = static_cast<size_t>(x);
      const uint32_t d = PixelBits(rows[row], column, bits);
      const uint32_t s = usesSource ? pixels[sy][sx] : 0;
      SetPixelBits(&rows[row], column, bits, ModelPixel(flags, d, s, bits));
    }
  }
  return rows;
}

VnStatus Combine(BitmapHandle* destination, const Placing& p, BitmapHandle* source,
                 uint32_t flags) {
  return Vn_CombineBitmap(destination, p.x, p.y, p.width, p.height, source, p.sourceX, p.sourceY,
                          flags);
}

void ExpectCombined(BitmapHandle* destination, const Placing& p, BitmapHandle* source,
                    uint32_t flags) {
  SCOPED_TRACE(testing::Message() << std::hex << "flags 0x" << flags << std::dec << ", "
                                  << destination->BitsPerPixel << " bits, to " << p.x << ", " << p.y
                                  << " from " << p.sourceX << ", " << p.sourceY << ", size "
                                  << p.width << ", " << p.height);
  const std::vector<Bytes> expected = Model(destination, p, source, flags);
  ASSERT_EQ(Combine(destination, p, source, flags), OK);
  ASSERT_EQ(ReadRows(destination), expected);
}

bool Exist(uint32_t flags) {
  return (flags & 15) < 4 && (flags >> 4 & 15) < 4 && (flags >> 8 & 15) < 12 && flags >> 12 < 4;
}

// Bounds that cut, rows long enough for vectors, and short ones; now and then nearly whole rows, so
// that little lies between them.
Placing RandomPlacing(Random& random, BitmapHandle* destination, BitmapHandle* source) {
  const auto few = [&] { return random.Between(0, 3); };
  if (random.Chance(3)) {
    return {few(), few(), destination->Width - few(), destination->Height, few(), few()};
  }
  return {random.Between(-5, destination->Width),    random.Between(-2, destination->Height),
          random.Between(0, destination->Width + 9), random.Between(0, destination->Height + 2),
          random.Between(-5, source->Width),         random.Between(-2, source->Height)};
}

// An ellipse with a hole, on one bitmap in three.
void MaybeSetRegion(BitmapHandle* bitmap, Random& random) {
  if (!random.Chance(3)) return;
  const int32_t left = random.Between(-4, 20), right = bitmap->Width - random.Between(-4, 20);
  SelectEllipse(bitmap, {left, -1, right, bitmap->Height});
  Select(bitmap, {20, 1, 33, 3}, REGION_COMBINE_OLD_MINUS_NEW);
}

TEST(Combine, AllFlagsEqualTheModel) {
  WithEachStorage([](const StorageKind& kind) {
    WithEachVectorForm([&] {
      Random random(42);
      const uint32_t step = kind.win32s ? 41 : 1;
      for (const int32_t bits : kDepths) {
        for (uint32_t flags = random.Next() % step; flags < 0x10000; flags += step) {
          if (!Exist(flags)) continue;
          const int32_t width = random.Between(30, 1600 / bits + 40);
          RandomBitmap destination(random, width, 5, bits, kind.request);
          RandomBitmap source(random, width + (random.Chance(2) ? 0 : 7), 6, bits, kind.request);
          MaybeSetRegion(destination, random);
          MaybeSetRegion(source, random);
          ExpectCombined(destination, RandomPlacing(random, destination, source), source, flags);
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    });
  });
}

// One bitmap onto itself, moved in every direction, and by parts of a byte.
TEST(Combine, OneBitmapMovesOverItself) {
  Random random(43);
  for (int32_t round = 0; round < 400; ++round) {
    const int32_t bits = kDepths[round % 6];
    RandomBitmap bitmap(random, 150 + 1500 / bits, 9, bits);
    Placing p = {20, 2, 100, 5, 20 + random.Between(-19, 19), 2 + random.Between(-2, 2)};
    if (random.Chance(2)) p = RandomPlacing(random, bitmap, bitmap);
    if (random.Chance(3)) p.sourceY = p.y;
    MaybeSetRegion(bitmap, random);
    const uint32_t flags = random.Chance(2) ? COMBINE_AND | COMBINE_DST_1 : COMBINE_ADD;
    ExpectCombined(bitmap, p, bitmap, flags);
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST(Combine, LooksAtTheSourceOnlyWhereItCounts) {
  Bitmap bitmap(20, 4, 8), other(20, 4, 24), empty;
  const Placing all = {0, 0, 20, 4, 0, 0};
  EXPECT_EQ(Combine(bitmap, all, nullptr, COMBINE_SUB_SRC | COMBINE_SRC_0), OK);
  EXPECT_EQ(Combine(bitmap, all, nullptr, COMBINE_RES_1 | COMBINE_MUL), OK);
  EXPECT_EQ(ReadRow(bitmap, 3), Bytes(20, 255));
  for (BitmapHandle* none : {static_cast<BitmapHandle*>(nullptr), other.get(), empty.get()}) {
    EXPECT_EQ(Combine(bitmap, all, none, COMBINE_XOR | COMBINE_SRC_1), OK);
    for (const uint32_t flags : {0u + COMBINE_XOR, 0u + COMBINE_DIV_SRC + COMBINE_SRC_0})
      EXPECT_EQ(Combine(bitmap, all, none, flags), ERR_INVALID_PARAMETER);
    if (none != other.get()) {
      EXPECT_EQ(Combine(none, all, bitmap, COMBINE_RES_0), ERR_INVALID_PARAMETER);
    }
  }
  for (const uint32_t flags : {0x4u, 0x40u, 0xC00u, 0x4000u, 0x10000u})
    EXPECT_EQ(Combine(bitmap, all, bitmap, flags), ERR_INVALID_PARAMETER);
}

// Coordinates are any numbers; sums wrap, and nothing outside of the bitmaps is touched.
TEST(Combine, AnyCoordinatesStayInside) {
  static constexpr int32_t kEnds[] = {INT32_MIN, INT32_MIN + 3, -1, 0, 5, INT32_MAX - 3, INT32_MAX};
  Random random(44);
  Bitmap destination(20, 4, 24), source(13, 6, 24);
  const auto any = [&] { return random.OneOf(kEnds); };
  for (int32_t round = 0; round < 2000; ++round) {
    const Placing p = {any(), any(), any(), any(), any(), any()};
    EXPECT_EQ(Combine(destination, p, source, COMBINE_XOR), OK);
    EXPECT_EQ(Combine(destination, p, nullptr, COMBINE_RES_1), OK);
  }
}

TEST(Combine, TellsProgressByRows) {
  Bitmap bitmap(20, 250, 4), source(20, 250, 4);
  const auto heard = [&](int32_t y, uint32_t flags) {
    const StatusLog log;
    EXPECT_EQ(Vn_CombineBitmap(bitmap, 0, y, 20, 250, source, 0, 0, flags), OK);
    return log.percents();
  };
  EXPECT_EQ(heard(30, COMBINE_ADD), ExpectedPercents(220));
  EXPECT_EQ(heard(240, COMBINE_RES_1), ExpectedPercents(10));
  const std::vector<int32_t> nothing = {0, 100};
  EXPECT_EQ(heard(250, COMBINE_ADD), nothing);
  EXPECT_EQ(heard(0, COMBINE_OR | COMBINE_SRC_0), nothing);

  // Upward, two rows are done when the callback stops the third call.
  ASSERT_EQ(Vn_ClearBitmap(bitmap), OK);
  ASSERT_EQ(Vn_CombineBitmap(source, 0, 0, 20, 250, nullptr, 0, 0, COMBINE_RES_1), OK);
  const StatusLog log(3, -9);
  EXPECT_EQ(Vn_CombineBitmap(bitmap, 0, 200, 20, 250, source, 0, 0, COMBINE_OR), -9);
  EXPECT_EQ(ReadRow(bitmap, 247)[0], 0);
  EXPECT_EQ(ReadRow(bitmap, 248)[0], 255);
  EXPECT_FALSE((bitmap->Flags | source->Flags) & FLAG_LOCKED);
}

}  // namespace
}  // namespace vn::test
