// Gray and optimised palettes on a 12-megapixel picture. What peers do is in *_peer.cpp.
#include "bench/against_memcpy.h"
#include "bench/photograph_bitmap.h"

namespace vn::bench {
namespace {

size_t BytesOf(const BitmapHandle* bitmap) {
  return size_t{bitmap->BytesPerLine} * static_cast<uint32_t>(bitmap->Height);
}

// The call replaces the bitmap, so every one has its own, made outside the time.
void Gray(benchmark::State& state) {
  double seconds = 0;
  size_t bytes = 0;
  for (auto _ : state) {
    PhotographBitmap bitmap;
    bytes = BytesOf(bitmap);
    const double start = ThreadSeconds();
    if (Vn_GrayScaleBitmap(bitmap) != OK) std::abort();
    const double taken = ThreadSeconds() - start;
    state.SetIterationTime(taken);
    seconds += taken;
    bytes += BytesOf(bitmap);
  }
  ReportRate(state, ThePhotograph().Pixels(), seconds);
  state.counters["%memcpy"] =
      100 * SecondsOf(TouchingCopy(bytes)) * static_cast<double>(state.iterations()) / seconds;
}
BENCHMARK(Gray)->Name("Gray/24")->UseManualTime()->Unit(benchmark::kMillisecond);

void Optimized256(benchmark::State& state, uint32_t method) {
  PhotographBitmap bitmap;
  Reduce(state, bitmap, 8, RES_OPTIMIZED_PALETTE | RES_DITHER_METHOD(method));
}
BENCHMARK_CAPTURE(Optimized256, nearest, 0)
    ->Name("Optimized256/nearest")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Optimized256, diffused, 1)
    ->Name("Optimized256/floyd-steinberg")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
