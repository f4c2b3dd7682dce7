// Combining bitmaps, beside libyuv on the packed bytes, and beside OpenCV where libyuv has no such
// operation. Their operations are near ours and not always the same: libyuv's average rounds up, its
// product is that of 16-bit fractions.
#include <libyuv.h>

#include <opencv2/core.hpp>

#include "bench/beside_peer.h"
#include "bench/pictures.h"

namespace vn::bench {
namespace {

// A photograph of 24 bits, a page of A4 at 300 dots per inch.
constexpr uint32_t kWidth = 4272, kHeight = 2848, kPageWidth = 2480, kPageHeight = 3508;

void Combine(Picture& to, Picture& from, uint32_t flags, int32_t sourceX = 0) {
  if (Vn_CombineBitmap(to, 0, 0, to->Width, to->Height, from, sourceX, 0, flags) != OK) {
    std::abort();
  }
}

using YuvOperation = int (*)(const uint8_t*, int, const uint8_t*, int, uint8_t*, int, int, int);

void Yuv(benchmark::State& state, uint32_t flags, YuvOperation operation) {
  Picture to(kWidth, kHeight, 24), from(kWidth, kHeight, 24);
  const auto stride = static_cast<int>(to->BytesPerLine);
  BesidePeer(
      state, double{kWidth} * kHeight, [&] { Combine(to, from, flags); },
      [&] {
        operation(to->Bits, stride, from->Bits, stride, to->Bits, stride, stride / 4, kHeight);
      });
}
int YuvAverage(const uint8_t* a, int aStride, const uint8_t* b, int bStride, uint8_t* to,
               int toStride, int width, int height) {
  return libyuv::ARGBInterpolate(a, aStride, b, bStride, to, toStride, width, height, 128);
}
BENCHMARK_CAPTURE(Yuv, add, COMBINE_ADD, libyuv::ARGBAdd)->Name("Combine/24/add")->UseManualTime();
BENCHMARK_CAPTURE(Yuv, sub, COMBINE_SUB_SRC, libyuv::ARGBSubtract)
    ->Name("Combine/24/subtract")
    ->UseManualTime();
BENCHMARK_CAPTURE(Yuv, mul, COMBINE_MUL, libyuv::ARGBMultiply)
    ->Name("Combine/24/multiply")
    ->UseManualTime();
BENCHMARK_CAPTURE(Yuv, average, COMBINE_AVERAGE, YuvAverage)
    ->Name("Combine/24/average")
    ->UseManualTime();

using CvOperation = void (*)(const cv::Mat&, const cv::Mat&, cv::Mat&);

// All bytes of the rows.
void Cv(benchmark::State& state, int32_t bits, uint32_t flags, int32_t sourceX,
        CvOperation operation) {
  cv::setNumThreads(1);
  const uint32_t width = bits == 1 ? kPageWidth : kWidth,
                 height = bits == 1 ? kPageHeight : kHeight;
  Picture to(width, height, bits), from(width + 8, height, bits);
  const auto matrix = [&](Picture& picture) {
    return cv::Mat(static_cast<int>(height), static_cast<int>(to->BytesPerLine), CV_8UC1,
                   picture->Bits, picture->BytesPerLine);
  };
  cv::Mat a = matrix(to), b = matrix(from);
  BesidePeer(
      state, double{1} * width * height, [&] { Combine(to, from, flags, sourceX); },
      [&] { operation(a, b, a); });
}
void CvAnd(const cv::Mat& a, const cv::Mat& b, cv::Mat& to) { cv::bitwise_and(a, b, to); }
void CvXor(const cv::Mat& a, const cv::Mat& b, cv::Mat& to) { cv::bitwise_xor(a, b, to); }
void CvMin(const cv::Mat& a, const cv::Mat& b, cv::Mat& to) { cv::min(a, b, to); }
void CvDivide(const cv::Mat& a, const cv::Mat& b, cv::Mat& to) { cv::divide(a, b, to, 255); }
BENCHMARK_CAPTURE(Cv, and, 1, COMBINE_AND, 0, CvAnd)->Name("Combine/1/and")->UseManualTime();
BENCHMARK_CAPTURE(Cv, xor, 1, COMBINE_XOR, 0, CvXor)->Name("Combine/1/xor")->UseManualTime();
BENCHMARK_CAPTURE(Cv, and3, 1, COMBINE_AND, 3, CvAnd)
    ->Name("Combine/1/and, shifted by 3")
    ->UseManualTime();
BENCHMARK_CAPTURE(Cv, xor3, 1, COMBINE_XOR, 3, CvXor)
    ->Name("Combine/1/xor, shifted by 3")
    ->UseManualTime();
BENCHMARK_CAPTURE(Cv, min, 24, COMBINE_MIN, 0, CvMin)->Name("Combine/24/minimum")->UseManualTime();
BENCHMARK_CAPTURE(Cv, divide, 24, COMBINE_DIV_SRC, 0, CvDivide)
    ->Name("Combine/24/divide")
    ->UseManualTime();

}  // namespace
}  // namespace vn::bench
