// Resampling against a slow model made from the definition of cells and spans.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "tests/support/slow_color.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"

namespace vn::test {
namespace {

int FloorDivide(int a, int b) { return a / b - (a % b < 0 ? 1 : 0); }

// One channel of a row or a column.
std::vector<int> SlowLine(const std::vector<int>& old, size_t size) {
  std::vector<int> line;
  if (size < old.size()) {
    for (size_t cell = 0; cell < size; ++cell) {
      const size_t first = cell * old.size() / size, end = (cell + 1) * old.size() / size;
      int sum = 0;
      for (size_t i = first; i < end; ++i)
        sum += old[i];
      line.push_back(sum / static_cast<int>(end - first));
    }
    return line;
  }
  line.assign(size / old.size() / 2, old[0]);
  for (size_t i = 0; i < old.size(); ++i) {
    const size_t first = i * size / old.size(), end = (i + 1) * size / old.size();
    const int rise = (i + 1 < old.size() ? old[i + 1] : old[i]) - old[i];
    for (size_t k = 0; k < end - first; ++k)
      line.push_back(old[i] + FloorDivide(static_cast<int>(k) * rise, end - first));
  }
  line.resize(size);
  return line;
}

// One channel of a picture, row by row.
using Plane = std::vector<std::vector<int>>;

Plane Transposed(const Plane& plane) {
  Plane result(plane[0].size(), std::vector<int>(plane.size()));
  for (size_t y = 0; y < plane.size(); ++y) {
    for (size_t x = 0; x < plane[0].size(); ++x)
      result[x][y] = plane[y][x];
  }
  return result;
}

Plane SlowPlane(Plane plane, size_t width, size_t height) {
  for (auto& row : plane)
    row = SlowLine(row, width);
  plane = Transposed(plane);
  for (auto& column : plane)
    column = SlowLine(column, height);
  return Transposed(plane);
}

// The rows that the bitmap must have at another size, the fill at their ends included.
std::vector<Bytes> SlowRows(BitmapHandle* bitmap, size_t width, size_t height) {
  const auto bits = static_cast<uint32_t>(bitmap->BitsPerPixel);
  const Colors colors = PaletteOf(bitmap);
  Plane planes[3];
  for (const Bytes& row : ReadRows(bitmap)) {
    for (Plane& plane : planes)
      plane.emplace_back();
    for (size_t x = 0; x < static_cast<size_t>(bitmap->Width); ++x) {
      const SlowColor c = SlowPixel(row, x, bits, bitmap->ColorOrder, colors.data());
      planes[0].back().push_back(c.blue);
      planes[1].back().push_back(c.green);
      planes[2].back().push_back(c.red);
    }
  }
  for (Plane& plane : planes)
    plane = SlowPlane(std::move(plane), width, height);

  const bool dithers = bits < 8 || (bits == 8 && Vn_IsGrayScaleBitmap(bitmap) != 1);
  BitmapHandle run;
  Vn_InitBitmap(&run, width, height, 24);
  run.DitherMethod = DITHER_FLOYD_STEINBERG;
  if (bits <= 8) Vn_StartDithering(&run, colors.data(), 1u << bits);
  const size_t lead = height / static_cast<size_t>(bitmap->Height) / 2;
  std::vector<Bytes> rows;
  for (size_t y = 0; y < height; ++y) {
    Bytes row((width * bits + 31) / 32 * 4), wide(width * 3);
    for (size_t x = 0; x < width; ++x) {
      const SlowColor c{planes[2][y][x], planes[1][y][x], planes[0][y][x]};
      SetSlowPixel(wide, x, 24, ORDER_BGR, c);
      if (bits > 8) SetSlowPixel(row, x, bits, ORDER_BGR, c);
      if (bits == 8) row[x] = static_cast<uint8_t>(c.green);
    }
    if (dithers && y >= lead) Vn_DitherLine(&run, wide.data(), row.data());
    rows.push_back(row);
  }
  // The first row is dithered once, however often it stands.
  for (size_t y = 0; y < lead; ++y)
    rows[y] = rows[lead];
  Vn_StopDithering(&run);
  return rows;
}

// A palette of one of the kinds that take ways of their own, or nothing for the fixed one.
Colors AnyPalette(Random& random, int32_t bits) {
  const size_t count = size_t{1} << bits;
  Colors colors = RandomColors(random, count);
  const int32_t kind = random.Between(0, 4);
  if (kind == 0) return {};
  for (size_t i = 0; kind < 4 && i < count; ++i) {
    const auto up = static_cast<uint8_t>(i * 255 / (count - 1));
    const auto down = static_cast<uint8_t>(255 - up);
    const uint8_t gray = kind == 1 ? up : kind == 2 ? down : colors[i].rgbRed;
    colors[i] = {gray, gray, gray, 0};
  }
  return colors;
}

// Resamples, and looks at pixels and palette.
void ExpectResampled(BitmapHandle* bitmap, int32_t width, int32_t height) {
  const Colors before = PaletteOf(bitmap);
  const auto expected = SlowRows(bitmap, width, height);
  ASSERT_EQ(Vn_ResampleBitmap(bitmap, width, height), OK);
  ASSERT_EQ(bitmap->Width, width);
  ASSERT_EQ(bitmap->Height, height);
  const Colors after = PaletteOf(bitmap);
  ASSERT_EQ(0, std::memcmp(before.data(), after.data(), before.size() * sizeof(RGBQUAD)));
  for (uint32_t y = 0; y < expected.size(); ++y)
    ASSERT_EQ(ReadRow(bitmap, y), expected[y]) << "row " << y;
}

void ResampleAnySizes(int32_t storage, int32_t rounds) {
  Random random(71 + static_cast<uint64_t>(storage));
  for (int32_t i = 0; i < rounds; ++i) {
    const int32_t bits = kDepths[i % 6], most[] = {3, 12, 40, 130};
    const auto side = [&] { return random.Between(1, random.OneOf(most)); };
    const int32_t more = random.Chance(6) ? random.Between(200, 1500) : 0;
    const int32_t width = side() + (i & 1 ? more : 0), height = side();
    const int32_t newWidth = random.Chance(6) ? width : side() + (i & 1 ? 0 : more);
    const int32_t newHeight = random.Chance(6) ? height : side();
    SCOPED_TRACE(Told(bits, "bits,", width, "x", height, "to", newWidth, "x", newHeight));
    const Colors colors = bits <= 8 ? AnyPalette(random, bits) : Colors();
    RandomBitmap bitmap(random, width, height, bits, storage,
                        colors.empty() ? nullptr : colors.data());
    ExpectResampled(bitmap, newWidth, newHeight);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(ResampleBitmap, IsAsTheSlowModelMakesIt) {
  WithEachVectorForm([] { ResampleAnySizes(STORAGE_AUTO, 300); });
}

HEADLESS_TEST(ResampleBitmap, FromFilesAndToThem) {
  const Win32sScope scope;
  ResampleAnySizes(STORAGE_DISK, 100);
  // Results beyond the largest block of memory lie in files. Dithering needs one of 128 KiB.
  Random random(73);
  Headless_SetLargestBlock(150000);
  for (const int32_t bits : {4, 8, 16, 24, 32}) {
    RandomBitmap bitmap(random, 50, 40, bits);
    ExpectResampled(bitmap, 610, 600);
    EXPECT_TRUE(bitmap->Flags & FLAG_ON_DISK);
    ExpectResampled(bitmap, 70, 65);
  }
  Headless_SetLargestBlock(0);
}

TEST(ResampleBitmap, KeepsResolutionAndPixelsOfTheSameSizeAndTakesTheRegionAlong) {
  Random random(72);
  RandomBitmap bitmap(random, 37, 9, 24);
  Select(bitmap, {3, 1, 30, 8});
  bitmap->XResolution = 301;
  const std::vector<COLORREF> before = SeenColors(bitmap);
  ASSERT_EQ(Vn_ResampleBitmap(bitmap, 37, 9), OK);
  EXPECT_EQ(SeenColors(bitmap), before);
  EXPECT_EQ(bitmap->XResolution, 301);
  ASSERT_EQ(Vn_ResampleBitmap(bitmap, 74, 3), OK);
  RECT box;
  ASSERT_EQ(Vn_GetBitmapRgnBounds(bitmap, nullptr, &box), OK);
  EXPECT_TRUE(box.left == 6 && box.right == 60);
}

// Rows that repeat the first one make no step, so an enlarged height does not reach the end.
TEST(ResampleBitmap, TellsProgressByRows) {
  for (const auto& [height, newHeight, lead] : {std::array{3, 12, 2}, {1, 9, 4}}) {
    Bitmap bitmap(5, height, 24);
    std::vector<int32_t> expected = ExpectedPercents(newHeight);
    expected.resize(expected.size() - static_cast<size_t>(lead));
    const StatusLog log;
    EXPECT_EQ(Vn_ResampleBitmap(bitmap, 4, newHeight), OK);
    EXPECT_EQ(log.percents(), expected);
  }
}

TEST(ResampleBitmap, RefusesWhatCannotBe) {
  EXPECT_EQ(Vn_ResampleBitmap(nullptr, 1, 1), ERR_NO_BITMAP);
  Bitmap bitmap(5, 6, 1);
  EXPECT_EQ(Vn_ResampleBitmap(bitmap, 0, 6), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_ResampleBitmap(bitmap, 5, -6), ERR_INVALID_PARAMETER);
  EXPECT_EQ(Vn_ResampleBitmap(bitmap, 0x10000000, 1), ERR_NO_MEMORY);  // at 24 bits it would wrap
  EXPECT_EQ(Vn_ResampleBitmap(bitmap, 70000, 0x7FFFFFFF), ERR_NO_MEMORY);
  EXPECT_EQ(bitmap->Width, 5);
}

}  // namespace
}  // namespace vn::test
