// FreeImage's quantiser by Wu, timed on the picture of the colour benchmarks, and its fill of a
// whole image for fill_beside.cpp. FreeImage.h declares Win32's types for itself, so nothing of the
// kernel is included here.
#include <FreeImage.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>

#include "bench/freeimage_fill.h"
#include "bench/photograph.h"
#include "bench/thread_clock.h"

namespace vn::bench {
namespace {

void FreeImageWu(benchmark::State& state) {
  const Photograph& photograph = ThePhotograph();
  const auto width = static_cast<int>(photograph.width);
  const auto height = static_cast<int>(photograph.height);
  FIBITMAP* picture = FreeImage_Allocate(width, height, 24);
  if (!picture) std::abort();
  for (int row = 0; row < height; ++row) {
    std::memcpy(FreeImage_GetScanLine(picture, row),
                photograph.pixels.data() + static_cast<size_t>(row) * photograph.RowBytes(),
                photograph.RowBytes());
  }
  const double start = ThreadSeconds();
  for (auto _ : state) {
    FIBITMAP* reduced = FreeImage_ColorQuantize(picture, FIQ_WUQUANT);
    if (!reduced) std::abort();
    FreeImage_Unload(reduced);
  }
  ReportRate(state, photograph.Pixels(), ThreadSeconds() - start);
  FreeImage_Unload(picture);
}
BENCHMARK(FreeImageWu)->Name("Optimized256/nearest/FreeImage-Wu")->Unit(benchmark::kMillisecond);

FIBITMAP* ImageOf(void* image) { return static_cast<FIBITMAP*>(image); }

}  // namespace

FreeImageFill::FreeImageFill(int32_t width, int32_t height, int32_t bits)
    : image_(FreeImage_Allocate(width, height, bits)) {
  if (!image_) std::abort();
}
FreeImageFill::~FreeImageFill() { FreeImage_Unload(ImageOf(image_)); }

void FreeImageFill::Fill(uint32_t color) {
  RGBQUAD fill = {};
  fill.rgbRed = static_cast<BYTE>(color);
  fill.rgbGreen = static_cast<BYTE>(color >> 8);
  fill.rgbBlue = static_cast<BYTE>(color >> 16);
  fill.rgbReserved = fill.rgbRed;
  const bool indexed = FreeImage_GetBPP(ImageOf(image_)) == 8;
  FreeImage_FillBackground(ImageOf(image_), &fill, indexed ? FI_COLOR_ALPHA_IS_INDEX : 0);
}

const uint8_t* FreeImageFill::Row(int32_t row) const {
  return FreeImage_GetScanLine(ImageOf(image_), row);
}

}  // namespace vn::bench
