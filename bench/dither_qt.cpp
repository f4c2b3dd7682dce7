// Dithering beside Qt: a reduction, which makes its result as ours does, and paints of half the
// picture's size, which Qt scales and then reduces.
#include "bench/beside_peer.h"
#include "bench/painting.h"
#include "bench/photograph_bitmap.h"
#include "bench/qt_photograph.h"

namespace vn::bench {
namespace {

void Ordered(benchmark::State& state, uint32_t bits, QImage::Format format) {
  PhotographBitmap bitmap;
  const QImage image = QtPhotograph();
  QImage result;
  const auto ours = [&] {
    ReduceOnce(bitmap, bits, RES_FIXED_PALETTE | RES_DITHER_METHOD(DITHER_ORDERED));
  };
  BesidePeer(state, ThePhotograph().Pixels(), ours, [&] {
    result = image.convertToFormat(format, ::Qt::OrderedDither | ::Qt::PreferDither);
  });
}

void Paint(benchmark::State& state, int32_t deviceBits, uint32_t mode) {
  PhotographBitmap bitmap;
  const Photograph& photograph = ThePhotograph();
  const auto width = static_cast<int32_t>(photograph.width / 2);
  const auto height = static_cast<int32_t>(photograph.height / 2);
  Painting painting(bitmap, width, height, deviceBits, mode, 0);
  const QImage image = QtPhotograph();
  const QImage::Format format = deviceBits == 1 ? QImage::Format_Mono : QImage::Format_Indexed8;
  const ::Qt::ImageConversionFlags flags =
      ::Qt::PreferDither | (mode ? ::Qt::OrderedDither : ::Qt::DiffuseDither);
  QImage result;
  const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  BesidePeer(
      state, static_cast<double>(pixels), [&] { painting.Paint(); },
      [&] {
        result = image.scaled(width, height, ::Qt::IgnoreAspectRatio, ::Qt::FastTransformation)
                     .convertToFormat(format, flags);
      },
      photograph.pixels.size() / 2 + pixels * static_cast<size_t>(deviceBits) / 8);
}

BENCHMARK_CAPTURE(Ordered, to8, 8, QImage::Format_Indexed8)
    ->Name("Ordered24/8/Qt")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Ordered, to1, 1, QImage::Format_Mono)
    ->Name("Ordered24/1/Qt")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

const bool registered = [] {
  for (const int32_t bits : {8, 1}) {
    for (const uint32_t mode : {0, int{MODE_ORDERED_DITHER}}) {
      const std::string name =
          std::string(mode ? "Paint/ordered/" : "Paint/diffused/") + std::to_string(bits) + "/Qt";
      benchmark::RegisterBenchmark(name.c_str(), Paint, bits, mode)
          ->UseManualTime()
          ->Iterations(11)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vn::bench
