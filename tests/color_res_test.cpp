// Colour resolution: the palette builder against a plain model, rows against their single steps,
// and what each kind of stop leaves behind.
#include <cstring>
#include <map>
#include <set>

#include "color/optimize_palette.h"
#include "color/system_colors.h"
#include "tests/support/failure_walk.h"
#include "tests/support/headless_control.h"
#include "tests/support/slow_color.h"
#include "tests/support/status_log.h"

namespace vn::test {
namespace {

// Cells of 15 bits in the order in which they are met.
using SlowBox = std::vector<uint32_t>;

class SlowSplitter {
 public:
  explicit SlowSplitter(BitmapHandle* bitmap) {
    SlowBox all;
    for (int32_t y = 0; y < bitmap->Height; ++y) {
      const Bytes row = ReadRow(bitmap, static_cast<uint32_t>(y));
      for (int32_t x = 0; x < bitmap->Width; ++x) {
        const SlowColor c =
            SlowPixel(row, static_cast<size_t>(x), static_cast<uint32_t>(bitmap->BitsPerPixel),
                      bitmap->ColorOrder, nullptr);
        const auto cell = static_cast<uint32_t>(c.red / 8 * 1024 + c.green / 8 * 32 + c.blue / 8);
        if (pixels_[cell]++ == 0) all.push_back(cell);
      }
    }
    boxes_.push_back(all);
  }

  void SplitUpTo(size_t count) {
    while (boxes_.size() < count) {
      size_t best = 0;
      uint64_t most = 0;
      for (size_t i = 0; i < boxes_.size(); ++i) {
        const uint64_t total =
            Variance(boxes_[i], 0) + Variance(boxes_[i], 1) + Variance(boxes_[i], 2);
        if (total > most) most = total, best = i;
      }
      if (most == 0) return;
      SplitBox(best);
    }
  }

  std::vector<std::array<int, 3>> SortedColors() const {
    std::vector<std::array<int, 3>> colors;
    for (const SlowBox& box : boxes_) {
      std::array<int, 3> color;
      for (int axis = 0; axis < 3; ++axis) {
        const auto mean = static_cast<int>(Mean(box, axis));
        color[static_cast<size_t>(axis)] = mean * 8 + mean / 4;
      }
      colors.push_back(color);
    }
    std::sort(colors.begin(), colors.end());
    return colors;
  }

 private:
  static uint64_t Part(uint32_t cell, int axis) { return cell >> (10 - 5 * axis) & 31; }

  // The mean of `value(part)` over the pixels of a box.
  template <class Value>
  uint64_t Average(const SlowBox& box, int axis, Value value) const {
    uint64_t sum = 0, weight = 0;
    for (const uint32_t cell : box) {
      sum += value(Part(cell, axis)) * pixels_.at(cell);
      weight += pixels_.at(cell);
    }
    return sum / weight;
  }
  uint64_t Mean(const SlowBox& box, int axis) const {
    return Average(box, axis, [](uint64_t part) { return part; });
  }
  uint64_t Variance(const SlowBox& box, int axis) const {
    const uint64_t mean = Mean(box, axis);
    return Average(box, axis, [=](uint64_t part) { return (part - mean) * (part - mean); });
  }

  // Two fronts that swap what stands on the wrong side; the last cell between them goes up unseen.
  void SplitBox(size_t index) {
    SlowBox& cells = boxes_[index];
    const uint64_t v[] = {Variance(cells, 0), Variance(cells, 1), Variance(cells, 2)};
    int axis = v[0] >= v[1] ? 0 : 1;
    if (v[2] > v[1]) axis = v[0] >= v[2] ? 0 : 2;
    const uint64_t pivot = Mean(cells, axis);
    size_t low = 0, high = cells.size() - 1;
    for (;;) {
      while (low < high && Part(cells[low], axis) <= pivot)
        ++low;
      if (low >= high) break;
      while (low < high && Part(cells[high], axis) > pivot)
        --high;
      if (low >= high) break;
      std::swap(cells[low], cells[high]);
      ++low, --high;
    }
    const SlowBox upper(cells.begin() + static_cast<ptrdiff_t>(low), cells.end());
    cells.resize(low);
    boxes_.push_back(upper);
  }

  std::map<uint32_t, uint64_t> pixels_;
  std::vector<SlowBox> boxes_;
};

// A picture of a few soft blobs, so that boxes differ in weight.
void FillBlobs(BitmapHandle* bitmap, Random& random) {
  Bytes row(bitmap->BytesPerLine);
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      const int base = random.Between(0, 3) * 60;
      const SlowColor c{base + random.Between(0, 70), base / 2 + random.Between(0, 40),
                        255 - base - random.Between(0, 70)};
      SetSlowPixel(row, static_cast<size_t>(x), static_cast<uint32_t>(bitmap->BitsPerPixel),
                   bitmap->ColorOrder, c);
    }
    WriteRow(bitmap, static_cast<uint32_t>(y), row);
  }
}

TEST(OptimizePalette, EqualsThePlainModelAndItsTableFindsTheBoxes) {
  Random random(21);
  for (const int32_t bits : {16, 24, 32}) {
    for (const uint32_t count : {1u, 2u, 3u, 16u, 100u, 256u}) {
      Bitmap bitmap(61, 47, bits);
      FillBlobs(bitmap, random);
      Colors colors(count);
      ScratchBuffer<uint32_t> table;
      ASSERT_EQ(OptimizePalette(bitmap, colors.data(), count, &table), OK);
      SlowSplitter model(bitmap);
      model.SplitUpTo(count);
      const auto expected = model.SortedColors();
      for (size_t i = 0; i < count; ++i) {
        const auto want = i < expected.size() ? expected[i] : std::array<int, 3>{};
        const std::array<int, 3> got{colors[i].rgbRed, colors[i].rgbGreen, colors[i].rgbBlue};
        EXPECT_EQ(got, want);
      }
      // Every colour of the picture has an answer, and all boxes are somebody's answer.
      std::set<uint32_t> used;
      for (uint32_t cell = 0; cell < 32768; ++cell)
        used.insert(table[cell]);
      used.erase(0u);
      EXPECT_EQ(used.size(), expected.size());
      EXPECT_LE(*used.rbegin(), count);
    }
  }
}

Colors ColorsOf(BitmapHandle* bitmap) {
  Colors colors(static_cast<size_t>(bitmap->ColorCount));
  EXPECT_EQ(Vn_GetBitmapColors(bitmap, 0, static_cast<uint32_t>(bitmap->ColorCount), colors.data()),
            OK);
  return colors;
}

TEST(ColorRes, CarriesPaletteBitmapsOverWithoutLoss) {
  Random random(25);
  const Colors colors = RandomColors(random, 256);
  for (const int32_t bits : {1, 4, 8}) {
    Bitmap source(40, 9, bits, VIEW_BOTTOM_FIRST, ORDER_BGR, colors.data());
    FillRandom(source, random);
    Bitmap result;
    ASSERT_EQ(Vn_ColorResBitmap(source, result, 8, 0, nullptr, 0, nullptr, 0), OK);
    const Colors sorted = ColorsOf(result);
    for (uint32_t y = 0; y < 9; ++y) {
      const Bytes from = ReadRow(source, y), to = ReadRow(result, y);
      for (size_t x = 0; x < 40; ++x) {
        const SlowColor want = SlowPixel(from, x, static_cast<uint32_t>(bits), 0, colors.data());
        const SlowColor got = SlowPixel(to, x, 8, 0, sorted.data());
        EXPECT_TRUE(want.red == got.red && want.green == got.green && want.blue == got.blue);
      }
    }
  }
}

TEST(ColorRes, OptimizedColorsWithFixedAndReservedSlots) {
  Random random(26);
  Bitmap source(64, 64, 24);
  FillBlobs(source, random);
  // Free, fixed, and fixed without being matched to.
  Colors slots(256, RGBQUAD{0, 0, 0, 2});
  slots[0] = {10, 20, 30, 0};
  slots[5] = {40, 50, 60, 1};
  Bitmap result;
  ASSERT_EQ(
      Vn_ColorResBitmap(source, result, 8, RES_OPTIMIZED_PALETTE, slots.data(), 100, nullptr, 0),
      OK);
  const Colors colors = ColorsOf(result);
  EXPECT_EQ(colors[0].rgbRed, 30);
  EXPECT_EQ(colors[5].rgbGreen, 50);
  Colors built(98);
  ASSERT_EQ(OptimizePalette(source, built.data(), 98, nullptr), OK);
  for (size_t i = 1, next = 0; i < 100; ++i) {
    if (i == 5) continue;
    EXPECT_EQ(std::memcmp(&colors[i], &built[next++], 3), 0) << i;
  }
  EXPECT_EQ(std::memcmp(&colors[100], "\2\2\2", 3), 0);
  for (uint32_t y = 0; y < 64; ++y) {
    const Bytes row = ReadRow(result, y);
    for (size_t x = 0; x < 64; ++x)
      EXPECT_TRUE(row[x] != 5 && row[x] < 100);
  }
}

TEST(ColorRes, PixelsWithoutAPaletteEntryCountAsFiller) {
  const Colors colors = {{90, 90, 90, 0}, {1, 1, 1, 0}, {200, 0, 0, 0}};
  Bitmap source(8, 1, 4);
  ASSERT_EQ(Vn_ColorResBitmap(source, source, 4, RES_USER_PALETTE, colors.data(), 3, nullptr, 0),
            OK);
  WriteRow(source, 0, {0x01, 0x2F, 0xFF, 0xFF});
  Bitmap result;
  ASSERT_EQ(Vn_ColorResBitmap(source, result, 8, 0, nullptr, 0, nullptr, 0), OK);
  // The missing entries are black and come first; (1, 1, 1) is nearest to the filler (2, 2, 2).
  EXPECT_EQ(ReadRow(result, 0), (Bytes{15, 14, 13, 14, 14, 14, 14, 14}));
}

struct Stop {
  int32_t rows = 0, stopAt = 0;
  static VnStatus VN_CALL Hear(BitmapHandle* target, uint8_t*, uint32_t rows, UINT_PTR data) {
    auto* stop = reinterpret_cast<Stop*>(data);
    EXPECT_EQ(rows, 1u);
    EXPECT_FALSE(target->Flags & FLAG_PALETTE_INDEXES);
    return ++stop->rows == stop->stopAt ? -99 : 0 + OK;
  }
};

TEST(ColorRes, RowsTooLongFor32BitsAreRefused) {
  // 8 bits: a stride that wraps to 0; 24 bits: to less than the row needs.
  for (const auto& [width, bits] : {std::pair{0x20000000u, 8u}, {0x10000000u, 24u}}) {
    Bitmap source(width, 1, 1);
    Stop rows;
    EXPECT_EQ(Vn_ColorResBitmap(source, nullptr, bits, bits == 8, nullptr, 0, Stop::Hear,
                                reinterpret_cast<UINT_PTR>(&rows)),
              ERR_NO_MEMORY);
    EXPECT_EQ(Vn_ColorResBitmap(source, source, bits, bits == 8, nullptr, 0, nullptr, 0),
              ERR_NO_MEMORY);
    EXPECT_EQ(source->BitsPerPixel, 1);
  }
}

TEST(ColorRes, TheTwoCallbacksStopDifferently) {
  Random random(27);
  Bitmap bitmap(30, 20, 24);
  FillRandom(bitmap, random);
  const BitmapHandle before = *bitmap.get();
  const Bytes pixels = ReadAll(bitmap);

  // The rows' own callback takes everything back ...
  Stop stop{0, 7};
  EXPECT_EQ(Vn_ColorResBitmap(bitmap, bitmap, 8, 0, nullptr, 0, Stop::Hear,
                              reinterpret_cast<UINT_PTR>(&stop)),
            -99);
  EXPECT_EQ(std::memcmp(&before, bitmap.get(), offsetof(BitmapHandle, CurrentOffset)), 0);
  EXPECT_EQ(ReadAll(bitmap), pixels);

  // ... the progress callback keeps what is done.
  Bitmap whole;
  ASSERT_EQ(Vn_ColorResBitmap(bitmap, whole, 8, 1, nullptr, 0, nullptr, 0), OK);
  {
    StatusLog log(8);
    EXPECT_EQ(Vn_ColorResBitmap(bitmap, bitmap, 8, 1, nullptr, 0, nullptr, 0), 77);
  }
  EXPECT_EQ(bitmap->BitsPerPixel, 8);
  for (uint32_t y = 0; y < 7; ++y)
    EXPECT_EQ(ReadRow(bitmap, y), ReadRow(whole, y));
  EXPECT_EQ(ReadRow(bitmap, 8), Bytes(bitmap->BytesPerLine));

  // Without a target the rows go to the callback alone.
  Stop all;
  EXPECT_EQ(Vn_ColorResBitmap(whole, nullptr, 1, 1, nullptr, 0, Stop::Hear,
                              reinterpret_cast<UINT_PTR>(&all)),
            OK);
  EXPECT_EQ(all.rows, 20);
}

HEADLESS_TEST(ColorRes, ReservesSystemColorsOnPaletteDisplays) {
  Colors colors(64, RGBQUAD{9, 9, 9, 9});
  EXPECT_EQ(ReserveSystemColors(colors.data(), 64), 0u);
  const DisplayScope display(8);
  ASSERT_EQ(ReserveSystemColors(colors.data(), 64), 20u);
  EXPECT_EQ(colors[10].rgbReserved, 9);
  EXPECT_EQ(colors[53].rgbReserved, 9);
  EXPECT_EQ(std::memcmp(&colors[0], "\0\0\0", 4), 0);
  EXPECT_EQ(std::memcmp(&colors[63], "\xFF\xFF\xFF", 4), 0);

  // The free slots of a result lie between them, so that the rows are dithered, and nearest colours
  // may be reserved ones.
  Random random(28);
  const Colors own = RandomColors(random, 16);
  Bitmap source(40, 3, 4, VIEW_BOTTOM_FIRST, ORDER_BGR, own.data()), result;
  FillRandom(source, random);
  ASSERT_EQ(Vn_ColorResBitmap(source, result, 8, RES_SYSTEM_COLORS, nullptr, 64, nullptr, 0), OK);
  const Colors made = ColorsOf(result);
  Colors built(44);
  ASSERT_EQ(OptimizePalette(source, built.data(), 44, nullptr), OK);
  EXPECT_EQ(std::memcmp(made.data(), colors.data(), 40), 0);
  EXPECT_EQ(std::memcmp(&made[10], built.data(), 44 * sizeof(RGBQUAD)), 0);
  EXPECT_EQ(std::memcmp(&made[54], &colors[54], 40), 0);
  const Bytes from = ReadRow(source, 1), to = ReadRow(result, 1);
  for (size_t x = 0; x < 40; ++x)
    EXPECT_EQ(made[to[x]].rgbGreen / 8, own[PixelBits(from, x, 4)].rgbGreen / 8);
}

HEADLESS_TEST(ColorRes, LeavesTheBitmapWhenMemoryFails) {
  Random random(29);
  for (const uint32_t flags : {0u, RES_FIXED_PALETTE | RES_DITHER_METHOD(2)}) {
    Bytes pixels(60);
    random.Fill(pixels.data(), pixels.size());
    WalkFailures(HEADLESS_MEMORY, [&](FailureRound& round) {
      Bitmap bitmap(20, 1, 24);
      WriteRow(bitmap, 0, pixels);
      const BitmapHandle before = *bitmap.get();
      const VnStatus status = round.Run(
          [&] { return Vn_ColorResBitmap(bitmap, bitmap, 4, flags, nullptr, 0, nullptr, 0); });
      // A palette object that could not be made is not reported, here as elsewhere.
      if (status == OK) return;
      EXPECT_EQ(status, ERR_NO_MEMORY);
      EXPECT_EQ(std::memcmp(&before, bitmap.get(), offsetof(BitmapHandle, CurrentOffset)), 0);
      EXPECT_EQ(ReadAll(bitmap), pixels);
    });
  }
}

}  // namespace
}  // namespace vn::test
