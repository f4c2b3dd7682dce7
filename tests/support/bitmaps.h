// Bitmaps for tests: owned, and filled.
#ifndef VNCORE_TESTS_SUPPORT_BITMAPS_H
#define VNCORE_TESTS_SUPPORT_BITMAPS_H

#include <gtest/gtest.h>

#include <vector>

#include "kernel/owned_bitmap.h"
#include "tests/support/random.h"

namespace vn::test {

using Bytes = std::vector<uint8_t>;
using Colors = std::vector<RGBQUAD>;

inline constexpr int32_t kDepths[] = {1, 4, 8, 16, 24, 32};

// Made and owned.
class Bitmap : public OwnedBitmap {
 public:
  Bitmap() = default;
  Bitmap(uint32_t width, uint32_t height, int32_t bits, uint32_t origin = VIEW_BOTTOM_FIRST,
         uint32_t order = ORDER_BGR, const RGBQUAD* colors = nullptr,
         int32_t storage = STORAGE_AUTO) {
    EXPECT_EQ(Vn_CreateBitmap(get(), storage, width, height, bits, order, colors, origin), OK);
  }
};

inline Bytes ReadRow(BitmapHandle* bitmap, uint32_t row) {
  Bytes bytes(bitmap->BytesPerLine);
  const int32_t state = Vn_LockBitmap(bitmap);
  EXPECT_EQ(Vn_GetBitmapRow(bitmap, bytes.data(), row, bitmap->BytesPerLine),
            static_cast<int32_t>(bitmap->BytesPerLine));
  Vn_UnlockBitmap(bitmap, state);
  return bytes;
}

inline void WriteRow(BitmapHandle* bitmap, uint32_t row, const Bytes& bytes) {
  const int32_t state = Vn_LockBitmap(bitmap);
  EXPECT_EQ(Vn_PutBitmapRow(bitmap, bytes.data(), row, static_cast<uint32_t>(bytes.size())),
            static_cast<int32_t>(bytes.size()));
  Vn_UnlockBitmap(bitmap, state);
}

inline Bytes ReadAll(BitmapHandle* bitmap) {
  Bytes all;
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    const Bytes bytes = ReadRow(bitmap, static_cast<uint32_t>(row));
    all.insert(all.end(), bytes.begin(), bytes.end());
  }
  return all;
}

inline void FillRandom(BitmapHandle* bitmap, Random& random) {
  Bytes bytes(bitmap->BytesPerLine);
  for (int32_t row = 0; row < bitmap->Height; ++row) {
    random.Fill(bytes.data(), bytes.size());
    WriteRow(bitmap, static_cast<uint32_t>(row), bytes);
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

}  // namespace vn::test

#endif
