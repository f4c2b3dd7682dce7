// Leptonica's turns. They make their result's storage. Its rows are big-endian words.
#include <leptonica/allheaders.h>

#include "bench/turns_beside.h"

namespace vn::bench {
namespace {

PIX* PixOf(const Plane& plane) {
  // 24 bits are 32 here.
  PIX* pix = pixCreate(plane.width, plane.height, plane.bits == 24 ? 32 : plane.bits);
  for (int32_t y = 0; y < plane.height; ++y) {
    for (int32_t x = 0; x < plane.width; ++x)
      pixSetPixel(pix, x, y, plane.Pixel(x, y));
  }
  return pix;
}

class Leptonica {
 public:
  explicit Leptonica(const Plane& picture) : bits_(picture.bits), pix_(PixOf(picture)) {}
  Leptonica(const Leptonica&) = delete;
  Leptonica& operator=(const Leptonica&) = delete;
  ~Leptonica() {
    pixDestroy(&pix_);
    pixDestroy(&result_);
  }
  Plane Result() const {
    Plane plane(pixGetWidth(result_), pixGetHeight(result_), bits_);
    for (int32_t y = 0; y < plane.height; ++y) {
      for (int32_t x = 0; x < plane.width; ++x) {
        l_uint32 value = 0;
        pixGetPixel(result_, x, y, &value);
        uint8_t& byte = plane.data()[y * plane.stride + x * bits_ / 8];
        byte = static_cast<uint8_t>(byte | value << (8 - bits_ - x * bits_ % 8));
      }
    }
    return plane;
  }

 protected:
  void Keep(PIX* result) {
    pixDestroy(&result_);
    result_ = result;
  }
  int32_t bits_;
  PIX* pix_;
  PIX* result_ = nullptr;
};

struct Quarter : Leptonica {
  using Leptonica::Leptonica;
  void Run() { Keep(pixRotate90(pix_, 1)); }
};

// By picking pixels, as ours, and by three shears, which moves words but distorts more.
template <int Kind>
struct Fine : Leptonica {
  using Leptonica::Leptonica;
  void Run() {
    const auto radians = static_cast<l_float32>(17.3 * 3.14159265358979 / 180);
    Keep(pixRotate(pix_, radians, Kind, L_BRING_IN_WHITE, 0, 0));
  }
};

void Quarters(benchmark::State& state) {
  TurnBeside<Quarter>(state, static_cast<int32_t>(state.range(0)), Turn::kClockwise);
}
BENCHMARK(Quarters)
    ->Name("QuarterTurn/Leptonica")
    ->ArgName("bits")
    ->Arg(1)
    ->Arg(4)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

void FineSampled(benchmark::State& state) {
  FineTurnBeside<Fine<L_ROTATE_SAMPLING>>(state, static_cast<int32_t>(state.range(0)));
}
void FineSheared(benchmark::State& state) {
  FineTurnBeside<Fine<L_ROTATE_SHEAR>>(state, static_cast<int32_t>(state.range(0)));
}
BENCHMARK(FineSampled)
    ->Name("FineTurn/Leptonica-sampled")
    ->ArgName("bits")
    ->Arg(1)
    ->Arg(8)
    ->Arg(24)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(FineSheared)
    ->Name("FineTurn/Leptonica-sheared")
    ->ArgName("bits")
    ->Arg(1)
    ->Arg(8)
    ->Arg(24)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
