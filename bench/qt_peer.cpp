// Qt's mirrors of 1-bit images, in place.
#include <QImage>

#include <utility>

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

BENCHMARK(Mirror1)->Name("Mirror/1/Qt")->UseManualTime()->Iterations(15);
BENCHMARK(Half1)->Name("HalfTurn/1/Qt")->UseManualTime()->Iterations(15);

}  // namespace
}  // namespace vn::bench
