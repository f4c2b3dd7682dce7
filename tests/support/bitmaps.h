// Bitmaps for tests: owned, and filled.
#ifndef VNCORE_TESTS_SUPPORT_BITMAPS_H
#define VNCORE_TESTS_SUPPORT_BITMAPS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "kernel/owned_bitmap.h"
#include "kernel/vector.h"
#include "tests/support/pixels.h"
#include "tests/support/random.h"
#include "tests/support/told.h"

namespace vn::test {

using Bytes = std::vector<uint8_t>;
using Colors = std::vector<RGBQUAD>;

inline constexpr int32_t kDepths[] = {1, 4, 8, 16, 24, 32};

// Made and owned.
class Bitmap : public OwnedBitmap {
 public:
  Bitmap() = default;
  Bitmap(int64_t width, int64_t height, int32_t bits, uint32_t origin = VIEW_BOTTOM_FIRST,
         uint32_t order = ORDER_BGR, const RGBQUAD* colors = nullptr,
         int32_t storage = STORAGE_AUTO) {
    EXPECT_EQ(Vn_CreateBitmap(get(), storage, width, height, bits, order, colors, origin), OK);
  }
};

inline Bytes ReadRow(BitmapHandle* bitmap, int64_t row) {
  Bytes bytes(bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  EXPECT_EQ(Vn_GetBitmapRow(bitmap, bytes.data(), row, bitmap->BytesPerLine),
            static_cast<int32_t>(bitmap->BytesPerLine));
  Vn_UnlockBitmap(bitmap, state);
  return bytes;
}

inline void WriteRow(BitmapHandle* bitmap, int64_t row, const Bytes& bytes) {
  const auto count = static_cast<uint32_t>(bytes.size());
  const int32_t state = Vn_LockBitmap(bitmap);
  EXPECT_EQ(Vn_PutBitmapRow(bitmap, bytes.data(), row, count), static_cast<int32_t>(count));
  Vn_UnlockBitmap(bitmap, state);
}

// As they are stored.
inline std::vector<Bytes> ReadRows(BitmapHandle* bitmap) {
  std::vector<Bytes> rows;
  for (int32_t row = 0; row < bitmap->Height; ++row)
    rows.push_back(ReadRow(bitmap, row));
  return rows;
}

inline Bytes ReadAll(BitmapHandle* bitmap) {
  Bytes all;
  for (const Bytes& row : ReadRows(bitmap))
    all.insert(all.end(), row.begin(), row.end());
  return all;
}

// The row of storage that shows line `line`, line 0 being the top.
inline int32_t RowOfLine(BitmapHandle* bitmap, int32_t line) {
  return bitmap->ViewOrigin == VIEW_BOTTOM_FIRST ? bitmap->Height - 1 - line : line;
}

// As the picture is seen, top line first.
inline std::vector<Bytes> SeenRows(BitmapHandle* bitmap) {
  std::vector<Bytes> rows = ReadRows(bitmap);
  if (bitmap->ViewOrigin == VIEW_BOTTOM_FIRST) std::reverse(rows.begin(), rows.end());
  return rows;
}

// The values of pixels, row by row.
using Pixels = std::vector<std::vector<uint32_t>>;
inline Pixels PixelsOf(BitmapHandle* bitmap, const std::vector<Bytes>& rows) {
  Pixels pixels;
  for (const Bytes& row : rows)
    pixels.push_back(RowPixels(row, bitmap->Width, bitmap->BitsPerPixel));
  return pixels;
}
inline Pixels StoredPixels(BitmapHandle* bitmap) { return PixelsOf(bitmap, ReadRows(bitmap)); }
inline Pixels SeenPixels(BitmapHandle* bitmap) { return PixelsOf(bitmap, SeenRows(bitmap)); }

// The colours that are seen, from the top line down.
inline std::vector<COLORREF> SeenColors(BitmapHandle* bitmap) {
  std::vector<COLORREF> colors;
  for (int32_t line = 0; line < bitmap->Height; ++line) {
    for (int32_t x = 0; x < bitmap->Width; ++x)
      colors.push_back(Vn_GetPixelColor(bitmap, RowOfLine(bitmap, line), x));
  }
  return colors;
}

// The entries of a bitmap's palette, 256 of them, those that it has not 0.
inline Colors PaletteOf(BitmapHandle* bitmap) {
  Colors colors(256);
  const auto count = static_cast<uint32_t>(bitmap->ColorCount);
  EXPECT_TRUE(count == 0 || Vn_GetBitmapColors(bitmap, 0, count, colors.data()) == OK);
  return colors;
}

inline void FillRandom(BitmapHandle* bitmap, Random& random) {
  Bytes bytes(bitmap->BytesPerLine);
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    random.Fill(bytes.data(), bytes.size());
    WriteRow(bitmap, row, bytes);
  }
}

// Random colours, flags bytes 0.
inline Colors RandomColors(Random& random, size_t count) {
  Colors colors(count);
  random.Fill(colors.data(), count * sizeof(RGBQUAD));
  for (RGBQUAD& color : colors)
    color.rgbReserved = 0;
  return colors;
}

// Of random pixels, in any order of rows and channels.
class RandomBitmap : public Bitmap {
 public:
  RandomBitmap(Random& random, int64_t width, int64_t height, int32_t bits,
               int32_t storage = STORAGE_AUTO, const RGBQUAD* colors = nullptr)
      : Bitmap(width, height, bits, VIEW_TOP_FIRST, ORDER_RGB, colors, storage) {
    if (random.Chance(2)) get()->ViewOrigin = VIEW_BOTTOM_FIRST;
    if (random.Chance(2)) get()->ColorOrder = ORDER_BGR;
    FillRandom(get(), random);
  }
};

inline void Select(BitmapHandle* bitmap, const RECT& rect, uint32_t mode = REGION_COMBINE_REPLACE) {
  EXPECT_EQ(Vn_SetBitmapRgnRect(bitmap, nullptr, &rect, mode), OK);
}
inline void SelectEllipse(BitmapHandle* bitmap, const RECT& box) {
  EXPECT_EQ(Vn_SetBitmapRgnEllipse(bitmap, nullptr, &box, REGION_COMBINE_REPLACE), OK);
}

// Makes a picture white within an ellipse and black elsewhere, and selects the white.
inline void MarkRegion(BitmapHandle* bitmap, const RECT& box) {
  EXPECT_EQ(Vn_ClearBitmap(bitmap), OK);
  SelectEllipse(bitmap, box);
  EXPECT_EQ(Vn_FillBitmap(bitmap, 0xFFFFFF), OK);
}
// After a motion the region still selects what is white.
inline void ExpectRegionOnMark(BitmapHandle* bitmap) {
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    for (int32_t x = 0; x < bitmap->Width; ++x)
      ASSERT_EQ(Vn_IsPtInBitmapRgn(bitmap, row, x), Vn_GetPixelColor(bitmap, row, x) == 0xFFFFFF)
          << x << ", " << row;
  }
}

// Calls `use` for the plain form of all loops, and for the vector form that the machine has.
template <class Use>
void WithEachVectorForm(Use use) {
  for (const VectorLevel level : {VectorLevel::kNone, VectorLevel::kAvx2}) {
    SCOPED_TRACE(level == VectorLevel::kNone ? "plain" : "vectors");
    const VectorLevel before = SetVectorLevel(level);
    use();
    SetVectorLevel(before);
  }
}

}  // namespace vn::test

#endif
