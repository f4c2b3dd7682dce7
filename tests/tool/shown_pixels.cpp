#include "tests/tool/shown_pixels.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "kernel/guards.h"

namespace vn::test {
namespace {

Rgb PixelOf(const BitmapHandle& bitmap, const std::vector<RGBQUAD>& colors, const uint8_t* row,
            int32_t x) {
  const auto at = static_cast<size_t>(x);
  switch (bitmap.BitsPerPixel) {
    case 1:
      return PixelReader<1>{row, colors.data()}(at);
    case 4:
      return PixelReader<4>{row, colors.data()}(at);
    case 8:
      return PixelReader<8>{row, colors.data()}(at);
    default:
      return PixelReader<24>{row, nullptr}(at);
  }
}

bool Near(Rgb a, Rgb b, int32_t tolerance) {
  return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
         std::abs(a.blue - b.blue) <= tolerance;
}

}  // namespace

void Load(const std::string& path, Rgb background, tool::Bitmap& bitmap) {
  const auto source = tool::OpenPicture(path, {background});
  tool::LoadBitmap(*source, STORAGE_AUTO, bitmap);
}

void ExpectShows(tool::Bitmap& bitmap, const ColorModel& model, int32_t tolerance) {
  std::vector<RGBQUAD> colors(256);
  if (bitmap->ColorCount) {
    ASSERT_EQ(
        Vn_GetBitmapColors(bitmap, 0, static_cast<uint32_t>(bitmap->ColorCount), colors.data()),
        OK);
  }
  const BitmapLock lock(bitmap);
  std::vector<uint8_t> row(bitmap->BytesPerLine);
  for (int32_t y = 0; y < bitmap->Height; ++y) {
    const auto at = static_cast<uint32_t>(tool::StorageRow(*bitmap.get(), y));
    ASSERT_EQ(Vn_GetBitmapRow(bitmap, row.data(), at, bitmap->BytesPerLine),
              static_cast<int32_t>(bitmap->BytesPerLine));
    for (int32_t x = 0; x < bitmap->Width; ++x) {
      const Rgb seen = PixelOf(*bitmap.get(), colors, row.data(), x);
      const Rgb wanted = model(x, y);
      ASSERT_TRUE(Near(seen, wanted, tolerance))
          << "pixel " << x << ", " << y << ": " << seen.red << "," << seen.green << "," << seen.blue
          << " for " << wanted.red << "," << wanted.green << "," << wanted.blue;
    }
  }
}

}  // namespace vn::test
