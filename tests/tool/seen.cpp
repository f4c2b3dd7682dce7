#include "tests/tool/seen.h"

#include <cstdlib>

#include "tests/support/bitmaps.h"

namespace vn::test {

Seen Look(const std::string& path, Rgb background) {
  const auto source = tool::OpenPicture(path, {background});
  tool::Bitmap bitmap;
  tool::LoadBitmap(*source, STORAGE_AUTO, bitmap);
  Seen seen{bitmap->Width,
            bitmap->Height,
            bitmap->BitsPerPixel,
            bitmap->XResolution,
            bitmap->YResolution,
            {},
            {}};
  seen.palette = PaletteOf(bitmap);
  seen.palette.resize(bitmap->ColorCount);
  for (const COLORREF c : SeenColors(bitmap))
    seen.pixels.push_back({GetRValue(c), GetGValue(c), GetBValue(c)});
  return seen;
}

void ExpectShows(const Seen& seen, const ColorModel& model, int32_t tolerance) {
  for (int32_t y = 0; y < seen.height; ++y) {
    for (int32_t x = 0; x < seen.width; ++x) {
      const Rgb is = seen.At(x, y), wanted = model(x, y);
      const int32_t off =
          std::max({std::abs(is.red - wanted.red), std::abs(is.green - wanted.green),
                    std::abs(is.blue - wanted.blue)});
      ASSERT_LE(off, tolerance) << "pixel " << x << ", " << y << ": " << is << " for " << wanted;
    }
  }
}

void WritePicture(const std::string& path, const tool::PictureInfo& info,
                  const std::function<uint32_t(int32_t x, int32_t y)>& pixelAt) {
  const auto sink = tool::CreatePicture(tool::OpenPictureFile(path), info);
  const auto bits = static_cast<size_t>(info.bits);
  for (int32_t y = 0; y < info.height; ++y) {
    std::vector<uint8_t> row((static_cast<size_t>(info.width) * bits + 7) / 8);
    for (int32_t x = 0; x < info.width; ++x) {
      const uint32_t pixel = pixelAt(x, y);
      const size_t at = static_cast<size_t>(x) * bits;
      if (bits == 24) {
        for (size_t i = 0; i < 3; ++i)
          row[at / 8 + i] = static_cast<uint8_t>(pixel >> 8 * i);
      } else {
        row[at / 8] |= static_cast<uint8_t>(pixel << (8 - bits - at % 8));
      }
    }
    sink->WriteRow(row.data());
  }
  sink->Finish();
}

}  // namespace vn::test
