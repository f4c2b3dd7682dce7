// FreeImage's quantiser by Wu, timed on the picture of the colour benchmarks. FreeImage.h declares
// Win32's types for itself, so nothing of the kernel is included here.
#include <FreeImage.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>

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

}  // namespace
}  // namespace vn::bench
