// libswscale's error diffusion to 3-3-2 bits and its gray, timed on the picture of the colour
// benchmarks, and its conversions between 16 and 24 bits.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

#include "bench/conversions_beside.h"
#include "bench/photograph.h"
#include "bench/thread_clock.h"

extern "C" {
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

namespace vn::bench {
namespace {

void Swscale(benchmark::State& state, AVPixelFormat format) {
  const Photograph& photograph = ThePhotograph();
  const auto width = static_cast<int>(photograph.width);
  const auto height = static_cast<int>(photograph.height);
  SwsContext* context = sws_alloc_context();
  if (!context) std::abort();
  av_opt_set_int(context, "srcw", width, 0);
  av_opt_set_int(context, "srch", height, 0);
  av_opt_set_int(context, "src_format", AV_PIX_FMT_RGB24, 0);
  av_opt_set_int(context, "dstw", width, 0);
  av_opt_set_int(context, "dsth", height, 0);
  av_opt_set_int(context, "dst_format", format, 0);
  av_opt_set_int(context, "sws_flags", SWS_POINT, 0);  // the size stays: the least filtering
  if (av_opt_set(context, "sws_dither", "ed", 0) < 0) std::abort();
  if (sws_init_context(context, nullptr, nullptr) < 0) std::abort();

  std::vector<uint8_t> result(photograph.pixels.size() / 3);
  const uint8_t* const from[4] = {photograph.pixels.data(), nullptr, nullptr, nullptr};
  const int fromStride[4] = {static_cast<int>(photograph.RowBytes()), 0, 0, 0};
  uint8_t* const to[4] = {result.data(), nullptr, nullptr, nullptr};
  const int toStride[4] = {width, 0, 0, 0};
  const double start = ThreadSeconds();
  for (auto _ : state) {
    if (sws_scale(context, from, fromStride, 0, height, to, toStride) != height) std::abort();
    benchmark::ClobberMemory();
  }
  ReportRate(state, photograph.Pixels(), ThreadSeconds() - start);
  sws_freeContext(context);
}
BENCHMARK_CAPTURE(Swscale, rgb8, AV_PIX_FMT_RGB8)
    ->Name("Fixed256/floyd-steinberg/swscale-ed")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Swscale, gray8, AV_PIX_FMT_GRAY8)
    ->Name("Gray/24/swscale")
    ->Unit(benchmark::kMillisecond);

// Between 16 and 24 bits.
void Converted(benchmark::State& state, int32_t fromBits, int32_t toBits) {
  const auto formatOf = [](int32_t bits) {
    return bits == 16 ? AV_PIX_FMT_RGB555LE : AV_PIX_FMT_BGR24;
  };
  SwsContext* context = nullptr;
  ConvertBeside(state, fromBits, toBits, [&](Plane& from, Plane& to) {
    context =
        sws_getCachedContext(context, from.width, from.height, formatOf(fromBits), to.width,
                             to.height, formatOf(toBits), SWS_POINT, nullptr, nullptr, nullptr);
    if (!context) std::abort();
    const uint8_t* const sources[4] = {from.data(), nullptr, nullptr, nullptr};
    uint8_t* const targets[4] = {to.data(), nullptr, nullptr, nullptr};
    const int sourceStrides[4] = {from.stride, 0, 0, 0}, targetStrides[4] = {to.stride, 0, 0, 0};
    sws_scale(context, sources, sourceStrides, 0, from.height, targets, targetStrides);
  });
  sws_freeContext(context);
}
BENCHMARK_CAPTURE(Converted, narrowed, 24, 16)
    ->Name("Rows/24/16/swscale")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Converted, widened, 16, 24)
    ->Name("Rows/16/24/swscale")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
