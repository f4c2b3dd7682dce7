// Combining bitmaps, beside libyuv on the packed bytes, and beside OpenCV where libyuv has no such
// operation. Their operations are near ours and not always the same: libyuv's average rounds up, its
// product is that of 16-bit fractions. And underlays, beside a chain of libyuv's calls.
#include <libyuv.h>

#include <cstring>

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

// What rows of a gray texture add to three channels and take from them, as packed bytes: kept for a
// texture that repeats, made row by row for one that does not.
class YuvTexture {
 public:
  YuvTexture(Picture& gray, bool repeats)
      : gray_(gray),
        width_(gray->Width),
        rows_(repeats ? gray->Height : 1),
        argb_(static_cast<size_t>(width_) * 4),
        neutral_(Stride(), 128),
        adds_(Stride() * static_cast<size_t>(rows_)),
        takes_(adds_.size()) {
    for (int y = 0; repeats && y < rows_; ++y)
      Prepare(y);
  }

  void Under(uint8_t* row, int y, int width) {
    if (rows_ == 1) Prepare(y);
    for (int x = 0; x < width; x += width_) {
      const int quads = std::min(width_, width - x) * 3 / 4;
      uint8_t* at = row + 3 * x;
      libyuv::ARGBAdd(at, 0, Row(adds_, y), 0, at, 0, quads, 1);
      libyuv::ARGBSubtract(at, 0, Row(takes_, y), 0, at, 0, quads, 1);
    }
  }

 private:
  size_t Stride() const { return static_cast<size_t>(width_) * 3; }
  uint8_t* Row(std::vector<uint8_t>& rows, int y) const {
    return rows.data() + Stride() * static_cast<size_t>(y % rows_);
  }
  void Prepare(int y) {
    uint8_t *adds = Row(adds_, y), *takes = Row(takes_, y);
    const uint8_t* grays = gray_->Bits + gray_->BytesPerLine * static_cast<uint32_t>(y);
    libyuv::J400ToARGB(grays, 0, argb_.data(), 0, width_, 1);
    libyuv::ARGBToRGB24(argb_.data(), 0, takes, 0, width_, 1);
    libyuv::ARGBSubtract(takes, 0, neutral_.data(), 0, adds, 0, width_ * 3 / 4, 1);
    libyuv::ARGBSubtract(neutral_.data(), 0, takes, 0, takes, 0, width_ * 3 / 4, 1);
  }

  Picture& gray_;
  int width_, rows_;
  std::vector<uint8_t> argb_, neutral_, adds_, takes_;
};

// A gray texture of this size, tiled from the picture's first row on. Its preparation counts.
void Underlay(benchmark::State& state, uint32_t width, uint32_t height) {
  Picture ours(kWidth, kHeight, 24), theirs(kWidth, kHeight, 24), texture(width, height, 24);
  ours->ViewOrigin = theirs->ViewOrigin = texture->ViewOrigin = VIEW_TOP_FIRST;
  if (Vn_GrayScaleBitmap(texture) != OK) std::abort();
  const auto run = [&] { Vn_UnderlayBitmap(ours, texture, UNDERLAY_TILE); };
  const auto peer = [&] {
    YuvTexture chain(texture, height < kHeight);
    for (uint32_t y = 0; y < kHeight; ++y)
      chain.Under(theirs->Bits + theirs->BytesPerLine * y, static_cast<int>(y), kWidth);
  };
  run();
  peer();
  if (std::memcmp(ours->Bits, theirs->Bits, ours->DataSize) != 0) {
    state.SkipWithError("the results differ");
    return;
  }
  BesidePeer(state, double{kWidth} * kHeight, run, peer);
}
BENCHMARK_CAPTURE(Underlay, tile, 512, 512)->Name("Underlay/24/tile of 512")->UseManualTime();
BENCHMARK_CAPTURE(Underlay, whole, kWidth, kHeight)->Name("Underlay/24/as large")->UseManualTime();

}  // namespace
}  // namespace vn::bench
