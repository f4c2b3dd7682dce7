// Dithered paints of half a picture's size beside Qt, which scales and then reduces.
#include <QImage>

#include "bench/beside_peer.h"
#include "bench/painting.h"
#include "bench/photograph_bitmap.h"

namespace vn::bench {
namespace {

void Beside(benchmark::State& state, int32_t deviceBits, uint32_t mode) {
  PhotographBitmap bitmap;
  const Photograph& photograph = ThePhotograph();
  const auto width = static_cast<int32_t>(photograph.width / 2);
  const auto height = static_cast<int32_t>(photograph.height / 2);
  Painting painting(bitmap, width, height, deviceBits, mode, 0);
  const QImage image(photograph.pixels.data(), static_cast<int>(photograph.width),
                     static_cast<int>(photograph.height), static_cast<int>(photograph.RowBytes()),
                     QImage::Format_BGR888);
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

const bool registered = [] {
  for (const int32_t bits : {8, 1}) {
    for (const uint32_t mode : {0, int{MODE_ORDERED_DITHER}}) {
      const std::string name =
          std::string(mode ? "Paint/ordered/" : "Paint/diffused/") + std::to_string(bits) + "/Qt";
      benchmark::RegisterBenchmark(name.c_str(), Beside, bits, mode)
          ->UseManualTime()
          ->Iterations(11)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vn::bench
