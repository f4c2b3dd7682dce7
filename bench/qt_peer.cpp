// Qt's mirrors of 1-bit images, in place, and its dithering, which makes its result as ours do, or
// scales to a half first as our paints do.
#include <QImage>

#include <utility>

#include "bench/painting.h"
#include "bench/photograph_bitmap.h"
#include "bench/turns_beside.h"

namespace vn::bench {
namespace {

template <bool Vertical>
class Qt {
 public:
  explicit Qt(const Plane& picture)
      : size_(picture), image_(picture.width, picture.height, QImage::Format_Mono) {
    for (int32_t y = 0; y < picture.height; ++y) {
      std::memcpy(image_.scanLine(y), picture.bytes.data() + y * picture.stride,
                  static_cast<size_t>(picture.stride));
    }
  }
  void Run() { image_ = std::move(image_).mirrored(true, Vertical); }
  Plane Result() const {
    Plane plane(size_);
    for (int32_t y = 0; y < plane.height; ++y) {
      std::memcpy(plane.data() + y * plane.stride, image_.constScanLine(y),
                  static_cast<size_t>(plane.stride));
    }
    return plane;
  }

 private:
  Plane size_;
  QImage image_;
};

void Mirror1(benchmark::State& state) { TurnBeside<Qt<false>>(state, 1, Turn::kMirror); }
void Half1(benchmark::State& state) { TurnBeside<Qt<true>>(state, 1, Turn::kHalf); }

QImage PhotographImage() {
  const Photograph& photograph = ThePhotograph();
  return QImage(photograph.pixels.data(), static_cast<int>(photograph.width),
                static_cast<int>(photograph.height), static_cast<int>(photograph.RowBytes()),
                QImage::Format_BGR888);
}

void Ordered(benchmark::State& state, uint32_t bits, QImage::Format format) {
  PhotographBitmap bitmap;
  const QImage image = PhotographImage();
  QImage result;
  const auto ours = [&] {
    ReduceOnce(bitmap, bits, RES_FIXED_PALETTE | RES_DITHER_METHOD(DITHER_ORDERED));
  };
  BesidePeer(state, ThePhotograph().Pixels(), ours, [&] {
    result = image.convertToFormat(format, ::Qt::OrderedDither | ::Qt::PreferDither);
  });
}

// On a screen of half the photograph's size, by the nearest pixels on both sides.
void Paint(benchmark::State& state, bool ordered, int32_t bits, QImage::Format format) {
  PhotographBitmap bitmap;
  const QImage image = PhotographImage();
  const int width = image.width() / 2, height = image.height() / 2;
  Painting painting(bitmap, width, height, bits, ordered ? MODE_ORDERED_DITHER : 0);
  QImage result;
  const auto dither = ordered ? ::Qt::OrderedDither : ::Qt::DiffuseDither;
  const size_t moved = size_t{bitmap->BytesPerLine} * static_cast<size_t>(height) +
                       static_cast<size_t>(width) * static_cast<size_t>(height * bits) / 8;
  BesidePeer(
      state, double{1} * width * height, [&] { painting.Paint(); },
      [&] {
        result = image.scaled(width, height, ::Qt::IgnoreAspectRatio, ::Qt::FastTransformation)
                     .convertToFormat(format, dither | ::Qt::PreferDither);
      },
      moved);
}
const bool registered = [] {
  const auto add = [](const char* name, bool ordered, int32_t bits, QImage::Format format) {
    benchmark::RegisterBenchmark(name, Paint, ordered, bits, format)
        ->UseManualTime()
        ->Iterations(15)
        ->Unit(benchmark::kMillisecond);
  };
  add("Paint/ordered/8/Qt", true, 8, QImage::Format_Indexed8);
  add("Paint/ordered/1/Qt", true, 1, QImage::Format_Mono);
  add("Paint/diffused/8/Qt", false, 8, QImage::Format_Indexed8);
  add("Paint/diffused/1/Qt", false, 1, QImage::Format_Mono);
  return true;
}();

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
BENCHMARK(Mirror1)->Name("Mirror/1/Qt")->UseManualTime()->Iterations(15);
BENCHMARK(Half1)->Name("HalfTurn/1/Qt")->UseManualTime()->Iterations(15);

}  // namespace
}  // namespace vn::bench
