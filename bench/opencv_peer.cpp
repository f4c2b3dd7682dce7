// OpenCV's flip, in place.
#include <opencv2/core.hpp>

#include "bench/turns_beside.h"

namespace vn::bench {
namespace {

template <int Channels, int Code>
class OpenCv {
 public:
  explicit OpenCv(const Plane& picture)
      : plane_(picture),
        matrix_(plane_.height, plane_.width, CV_MAKETYPE(CV_8U, Channels), plane_.data(),
                static_cast<size_t>(plane_.stride)) {
    cv::setNumThreads(1);
  }
  void Run() { cv::flip(matrix_, matrix_, Code); }
  const Plane& Result() const { return plane_; }

 private:
  Plane plane_;
  cv::Mat matrix_;
};

void Flip24(benchmark::State& state) { TurnBeside<OpenCv<3, 0>>(state, 24, Turn::kFlip); }
void Mirror32(benchmark::State& state) { TurnBeside<OpenCv<4, 1>>(state, 32, Turn::kMirror); }

BENCHMARK(Flip24)
    ->Name("Flip/24/OpenCV")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Mirror32)
    ->Name("Mirror/32/OpenCV")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
