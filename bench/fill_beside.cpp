// Fills of a 12-megapixel picture beside FreeImage's and OpenCV's. FreeImage.h declares Win32's
// types for itself, so what is its own lies in freeimage_peer.cpp.
#include <opencv2/imgproc.hpp>

#include "bench/beside_peer.h"
#include "bench/freeimage_fill.h"
#include "bench/pictures.h"

namespace vn::bench {
namespace {

constexpr int32_t kWidth = 4272, kHeight = 2848;

size_t BytesOfPixels(uint32_t pixels, int32_t bits) {
  return size_t{pixels} * static_cast<uint32_t>(bits) / 8;
}

// Every call another colour, of three bytes that differ.
COLORREF NextColor() {
  static uint8_t level = 0;
  ++level;
  return RGB(level, level + 100, level + 200);
}

void Whole(benchmark::State& state) {
  const auto bits = static_cast<int32_t>(state.range(0));
  Picture picture(kWidth, kHeight, bits);
  FreeImageFill peer(kWidth, kHeight, bits);
  const COLORREF color = RGB(10, 120, 200);
  const auto ours = [&] { Vn_FillBitmap(picture, NextColor()); };
  BesidePeer(
      state, double{kWidth} * kHeight, ours, [&] { peer.Fill(NextColor()); },
      BytesOfPixels(kWidth * kHeight, bits));
  Vn_FillBitmap(picture, color);
  peer.Fill(color);
  const BitmapLock lock(picture);
  if (bits > 8 && std::memcmp(peer.Row(kHeight / 2), picture->Bits, size_t{kWidth} * 3) != 0) {
    state.SkipWithError("the colours differ");
  }
}
BENCHMARK(Whole)
    ->Name("Fill/FreeImage")
    ->ArgName("bits")
    ->Arg(8)
    ->Arg(24)
    ->UseManualTime()
    ->Iterations(31)
    ->Unit(benchmark::kMicrosecond);

void Ellipse(benchmark::State& state) {
  cv::setNumThreads(1);
  Picture picture(kWidth, kHeight, 24);
  const RECT box = {0, 0, kWidth, kHeight};
  Vn_SetBitmapRgnEllipse(picture, nullptr, &box, REGION_COMBINE_REPLACE);
  uint32_t area = 0;
  Vn_GetBitmapRgnArea(picture, &area);
  cv::Mat matrix(kHeight, kWidth, CV_8UC3);
  const auto theirs = [&] {
    const COLORREF color = NextColor();
    cv::ellipse(matrix, {kWidth / 2, kHeight / 2}, {kWidth / 2, kHeight / 2}, 0, 0, 360,
                cv::Scalar(GetBValue(color), GetGValue(color), GetRValue(color)), cv::FILLED);
  };
  BesidePeer(
      state, area, [&] { Vn_FillBitmap(picture, NextColor()); }, theirs, BytesOfPixels(area, 24));
}
BENCHMARK(Ellipse)
    ->Name("Fill/ellipse/OpenCV")
    ->UseManualTime()
    ->Iterations(31)
    ->Unit(benchmark::kMicrosecond);

// What the next reader pays: a fill and a sum over all bytes, beside memset and the same sum.
void ThenRead(benchmark::State& state) {
  const auto rows = static_cast<uint32_t>(state.range(0) << 20) / (4096 * 3);
  Picture picture(4096, rows, 24);
  const BitmapLock lock(picture);
  const size_t bytes = size_t{picture->BytesPerLine} * rows;
  uint8_t value = 0;
  const auto sum = [&] {
    uint64_t total = 0, word;
    for (size_t i = 0; i + 8 <= bytes; i += 8) {
      std::memcpy(&word, picture->Bits + i, 8);
      total += word;
    }
    benchmark::DoNotOptimize(total);
  };
  BesidePeer(
      state, double{4096} * rows,
      [&] {
        Vn_FillBitmap(picture, NextColor());
        sum();
      },
      [&] {
        std::memset(picture->Bits, ++value, bytes);
        sum();
      },
      2 * bytes);
}
BENCHMARK(ThenRead)
    ->Name("Fill/then-read/memset")
    ->ArgName("MiB")
    ->Arg(4)
    ->Arg(12)
    ->Arg(17)
    ->Arg(36)
    ->UseManualTime()
    ->Iterations(31)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vn::bench
