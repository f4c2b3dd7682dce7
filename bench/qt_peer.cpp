// Qt's mirrors of 1-bit images, in place, and its dithering, which makes its result as ours do, or
// scales to a half first as our paints do.
#include <QImage>

#include <utility>

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
