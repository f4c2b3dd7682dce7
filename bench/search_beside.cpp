// The nearest of 256 colours for every pixel of the 12-megapixel picture: exactly, beside Qt, and
// by cells of 15 bits, beside Pillow, which has cells of 18.
#include <cstdlib>
#include <memory>

#include "bench/beside_peer.h"
#include "bench/photograph_bitmap.h"
#include "bench/pillow_seconds.h"
#include "bench/qt_photograph.h"
#include "color/color_match.h"
#include "color/row_converter.h"

namespace vn::bench {
namespace {

// Colours that fit the picture.
struct Palette256 {
  explicit Palette256(BitmapHandle* picture) {
    BitmapHandle reduced;
    if (Vn_ColorResBitmap(picture, &reduced, 8, RES_OPTIMIZED_PALETTE, nullptr, 0, nullptr, 0) !=
        OK) {
      std::abort();
    }
    Vn_GetPaletteEntries(reduced.Palette, 0, 256, colors);
    Vn_FreeBitmap(&reduced);
  }
  RGBQUAD colors[256]{};
};

uint32_t DistanceTo(const uint8_t* pixel, const RGBQUAD& color) {
  const int32_t b = pixel[0] - color.rgbBlue, g = pixel[1] - color.rgbGreen,
                r = pixel[2] - color.rgbRed;
  return static_cast<uint32_t>(b * b + g * g + r * r);
}

void Exact(benchmark::State& state) {
  const Photograph& photograph = ThePhotograph();
  PhotographBitmap bitmap;
  const Palette256 palette(bitmap);
  std::vector<uint8_t> indexes(size_t{photograph.width} * photograph.height);
  const auto ours = [&] {
    const auto converter = std::make_unique<RowConverter>();
    if (!converter->Prepare({24, ORDER_BGR, nullptr}, {8, ORDER_BGR, palette.colors},
                            indexes.size())) {
      std::abort();
    }
    for (size_t y = 0; y < photograph.height; ++y) {
      converter->Convert(photograph.pixels.data() + y * photograph.RowBytes(),
                         indexes.data() + y * photograph.width, photograph.width);
    }
  };
  QVector<QRgb> table;
  for (const RGBQUAD& c : palette.colors)
    table.push_back(qRgb(c.rgbRed, c.rgbGreen, c.rgbBlue));
  // Qt searches for pixels of 32 bits.
  const QImage image = QtPhotograph().convertToFormat(QImage::Format_RGB32);
  QImage result;
  BesidePeer(
      state, photograph.Pixels(), ours,
      [&] {
        result = image.convertToFormat(QImage::Format_Indexed8, table, ::Qt::ThresholdDither);
      },
      photograph.pixels.size() + indexes.size());
  // Qt's answers are not always the nearest.
  for (size_t i = 0; i < indexes.size(); i += 97) {
    const uint8_t* const pixel = photograph.pixels.data() + 3 * i;
    uint32_t least = ~0u;
    for (const RGBQUAD& color : palette.colors)
      least = std::min(least, DistanceTo(pixel, color));
    if (DistanceTo(pixel, palette.colors[indexes[i]]) != least) {
      return state.SkipWithError("a colour is not the nearest");
    }
  }
}
BENCHMARK(Exact)
    ->Name("Nearest256/exact/Qt")
    ->UseManualTime()
    ->Iterations(7)
    ->Unit(benchmark::kMillisecond);

void Cells(benchmark::State& state) {
  PhotographBitmap bitmap;
  Palette256 palette(bitmap);
  const auto ours = [&] {
    BitmapHandle reduced;
    if (Vn_ColorResBitmap(bitmap, &reduced, 8, RES_USER_PALETTE, palette.colors, 256, nullptr, 0) !=
        OK) {
      std::abort();
    }
    Vn_FreeBitmap(&reduced);
  };
  const double pixels = ThePhotograph().Pixels();
  BesideProcess(state, pixels, ours, PillowSeconds("--nearest"), static_cast<size_t>(4 * pixels));
}
BENCHMARK(Cells)
    ->Name("Nearest256/cells/Pillow")
    ->UseManualTime()
    ->Iterations(9)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
