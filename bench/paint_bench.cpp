// Painting on the headless screen: scaling, dithering, 1-bit pictures as gray, and the device's own
// copy.
#include <algorithm>

#include "bench/against_memcpy.h"
#include "bench/painting.h"
#include "kernel/pixel_format.h"

namespace vn::bench {
namespace {

constexpr int32_t kWidth = 2048;
constexpr int32_t kHeight = 1536;

// A picture of the given size and depth over a whole screen of 2048 by 1536.
void Paint(benchmark::State& state, int32_t bits, int32_t deviceBits, uint32_t mode,
           int32_t percent) {
  const auto width = static_cast<uint32_t>(kWidth * percent / 100);
  const auto height = static_cast<uint32_t>(kHeight * percent / 100);
  Picture picture(width, height, bits);
  Painting painting(picture, kWidth, kHeight, deviceBits, mode, 20);
  // Of a larger picture only the rows that are shown are read.
  const size_t rowsRead = std::min(static_cast<size_t>(height), static_cast<size_t>(kHeight));
  CompareTouched(state, double{kWidth} * kHeight, size_t{picture->BytesPerLine} * rowsRead,
                 size_t{StrideOf(kWidth, static_cast<uint32_t>(deviceBits))} * kHeight,
                 [&] { painting.Paint(); });
}

void Ordered(benchmark::State& state) {
  Paint(state, 24, static_cast<int32_t>(state.range(0)), MODE_ORDERED_DITHER,
        static_cast<int32_t>(state.range(1)));
}
void Diffusion(benchmark::State& state) {
  Paint(state, 24, static_cast<int32_t>(state.range(0)), 0, static_cast<int32_t>(state.range(1)));
}

// Percent: the picture's size in parts of the screen's. 100 is unscaled.
void Sizes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"bits", "percent"})->Unit(benchmark::kMillisecond);
  for (const int64_t bits : {1, 4, 8}) {
    for (const int64_t percent : {100, 60, 170})
      bench->Args({bits, percent});
  }
}
BENCHMARK(Ordered)->Apply(Sizes);
BENCHMARK(Diffusion)->Apply(Sizes);

template <int32_t Bits, uint32_t Mode>
void OfMode(benchmark::State& state) {
  Paint(state, Bits, 24, Mode, static_cast<int32_t>(state.range(0)));
}
void Percents(benchmark::internal::Benchmark* bench) {
  bench->ArgName("percent")->Arg(100)->Arg(60)->Arg(170)->Unit(benchmark::kMillisecond);
}
BENCHMARK(OfMode<24, 0>)->Name("Direct")->Apply(Percents);
BENCHMARK(OfMode<1, MODE_BITONAL_GRAY>)->Name("BitonalGray")->Apply(Percents);
BENCHMARK(OfMode<1, MODE_BITONAL_VOTE>)->Name("BitonalVote")->Apply(Percents);

}  // namespace
}  // namespace vn::bench
