// libyuv's mirrors and turns. They write into memory that is there.
#include <libyuv.h>

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

const bool registered = [] {
  const auto add = [](const char* name, auto run) {
    benchmark::RegisterBenchmark(name, run)->UseManualTime()->Iterations(15)->Unit(
        benchmark::kMillisecond);
  };
  add("Mirror/8/libyuv", [](auto& state) { TurnBeside<Mirror8>(state, 8, Turn::kMirror); });
  add("Mirror/24/libyuv", [](auto& state) { TurnBeside<Mirror24>(state, 24, Turn::kMirror); });
  add("HalfTurn/24/libyuv", [](auto& state) { TurnBeside<Half24>(state, 24, Turn::kHalf); });
  add("QuarterTurn/8/libyuv", [](auto& state) { QuarterTurnBeside<Quarter8>(state, 8); });
  return true;
}();

}  // namespace
}  // namespace vn::bench
