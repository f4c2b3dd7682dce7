// libyuv's mirrors, turns and conversions. They write into memory that is there.
#include <libyuv.h>

#include "bench/conversions_beside.h"
#include "bench/turns_beside.h"

namespace vn::bench {
namespace {

class Libyuv {
 public:
  explicit Libyuv(const Plane& picture) : from_(picture), to_(picture) {}
  const Plane& Result() const { return to_; }

 protected:
  Plane from_, to_;
};

struct Mirror8 : Libyuv {
  using Libyuv::Libyuv;
  void Run() {
    libyuv::MirrorPlane(from_.data(), from_.stride, to_.data(), to_.stride, from_.width,
                        from_.height);
  }
};
struct Mirror24 : Libyuv {
  using Libyuv::Libyuv;
  void Run() {
    libyuv::RGB24Mirror(from_.data(), from_.stride, to_.data(), to_.stride, from_.width,
                        from_.height);
  }
};
// A negative height takes the rows from the bottom up.
struct Half24 : Libyuv {
  using Libyuv::Libyuv;
  void Run() {
    libyuv::RGB24Mirror(from_.data(), from_.stride, to_.data(), to_.stride, from_.width,
                        -from_.height);
  }
};
struct Quarter8 : Libyuv {
  explicit Quarter8(const Plane& picture) : Libyuv(picture) {
    to_ = Plane(picture.height, picture.width, picture.bits);
  }
  void Run() {
    libyuv::RotatePlane90(from_.data(), from_.stride, to_.data(), to_.stride, from_.width,
                          from_.height);
  }
};

using Conversion = int (*)(const uint8_t*, int, uint8_t*, int, int, int);
void Converted(benchmark::State& state, int32_t from, int32_t to, Conversion convert) {
  ConvertBeside(state, from, to, [convert](Plane& a, Plane& b) {
    convert(a.data(), a.stride, b.data(), b.stride, a.width, a.height);
  });
}

const bool registered = [] {
  const auto add = [](const char* name, auto run) {
    benchmark::RegisterBenchmark(name, run)->UseManualTime()->Iterations(15)->Unit(
        benchmark::kMillisecond);
  };
  add("Mirror/8/libyuv", [](auto& state) { TurnBeside<Mirror8>(state, 8, Turn::kMirror); });
  add("Mirror/24/libyuv", [](auto& state) { TurnBeside<Mirror24>(state, 24, Turn::kMirror); });
  add("HalfTurn/24/libyuv", [](auto& state) { TurnBeside<Half24>(state, 24, Turn::kHalf); });
  add("QuarterTurn/8/libyuv", [](auto& state) { QuarterTurnBeside<Quarter8>(state, 8); });
  const auto convert = [&add](const char* name, int32_t from, int32_t to, Conversion conversion) {
    add(name, [=](auto& state) { Converted(state, from, to, conversion); });
  };
  convert("Rows/24/32/libyuv", 24, 32, libyuv::RGB24ToARGB);
  convert("Rows/32/24/libyuv", 32, 24, libyuv::ARGBToRGB24);
  convert("Rows/16/32/libyuv", 16, 32, libyuv::ARGB1555ToARGB);
  convert("Rows/32/16/libyuv", 32, 16, libyuv::ARGBToARGB1555);
  return true;
}();

}  // namespace
}  // namespace vn::bench
