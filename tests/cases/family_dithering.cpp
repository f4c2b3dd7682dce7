// Line dithering: all methods and palette kinds, runs that end early, arguments that are refused.
#include <algorithm>

#include "tests/cases/bitmaps.h"

namespace vn::cases {

namespace {

// A target palette: none, part of a fixed one, or random with reserved entries.
std::vector<RGBQUAD> RandomTarget(Case& test, uint32_t count) {
  if (test.random.Chance(3)) return {};
  if (test.random.Chance(4)) {
    const uint32_t bits = count <= 2 ? 1 : count <= 16 ? 4 : 8;
    std::vector<RGBQUAD> colors(256);
    Vn_GetFixedPalette(colors.data(), bits);
    return colors;
  }
  std::vector<RGBQUAD> colors = RandomColors(test, 256);
  colors[0].rgbReserved = 0;  // one entry at least can be matched to
  return colors;
}

void Run(Case& test) {
  Bitmap bitmap(test, RandomShape(test, 60, 24));
  bitmap->DitherMethod = static_cast<uint32_t>(test.random.Chance(60) ? 9 : test.Pick(0, 8));
  const auto count = static_cast<uint32_t>(
      test.random.Chance(60) ? test.OneOf({0, 257}) : test.Pick(1, test.OneOf({2, 16, 256})));
  const std::vector<RGBQUAD> colors = RandomTarget(test, std::min(count, 256u));
  test.Note("method %u, %u colours%s", bitmap->DitherMethod, count,
            colors.empty() ? ", fixed" : "");
  const VnStatus started =
      Vn_StartDithering(bitmap, colors.empty() ? nullptr : colors.data(), count);
  test.Fold("Vn_StartDithering", started);
  bitmap->DitherMethod = 3;  // a run keeps the method that it began with
  std::vector<uint8_t> row(bitmap->BytesPerLine), line(static_cast<size_t>(bitmap->Width) + 3);
  const int32_t lines = test.random.Chance(5) ? test.Pick(0, bitmap->Height) : bitmap->Height;
  const int32_t state = Vn_LockBitmap(bitmap);
  for (int32_t y = 0; y < lines; ++y) {
    Vn_GetBitmapRow(bitmap, row.data(), static_cast<uint32_t>(y), bitmap->BytesPerLine);
    std::fill(line.begin(), line.end(), static_cast<uint8_t>(0x5A));
    test.Fold("Vn_DitherLine", Vn_DitherLine(bitmap, row.data(), line.data()));
    test.FoldBytes("line", line.data(), line.size());
  }
  Vn_UnlockBitmap(bitmap, state);
  test.Fold("Vn_StopDithering", Vn_StopDithering(bitmap));
  test.FoldHandle("DitherState", bitmap->DitherState);
}

const Registration registration({"dithering", 4000, 0xFB554AD31C0A1249u, Run});

}  // namespace

}  // namespace vn::cases
