// OpenCV's flip, in place, and its conversion of grays.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/conversions_beside.h"
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

// Grays, beside a gray ramp of ours and beside any other palette.
void Expand8(benchmark::State& state, const RGBQUAD* colors) {
  cv::setNumThreads(1);
  const auto convert = [](Plane& from, Plane& to) {
    const cv::Mat grays(from.height, from.width, CV_8UC1, from.data(),
                        static_cast<size_t>(from.stride));
    cv::Mat wide(to.height, to.width, CV_8UC3, to.data(), static_cast<size_t>(to.stride));
    cv::cvtColor(grays, wide, cv::COLOR_GRAY2BGR);
  };
  ConvertBeside(state, 8, 24, convert, colors);
}

BENCHMARK_CAPTURE(Expand8, grays, nullptr)
    ->Name("Rows/gray/24/OpenCV")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Expand8, palette, FixedPalette256.data())
    ->Name("Rows/8/24/OpenCV")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
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
