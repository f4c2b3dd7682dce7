// Effects over a screen of 1024 by 768 with 8 bits, beside the plain paint of the same picture.
#include <algorithm>

#include "bench/pictures.h"
#include "bench/thread_clock.h"
#include "device/realized_palette.h"

namespace vn::bench {
namespace {

constexpr int32_t kWidth = 1024, kHeight = 768;

// Adds the counter `x plain`: the effect's time in times of the plain paint, run in turn with it.
// The fastest of each counts.
void Effect(benchmark::State& state, int32_t bits, uint32_t mode) {
  const auto effect = static_cast<uint32_t>(state.range(0));
  Picture picture(kWidth, kHeight, bits);
  SetScreen(kWidth, kHeight, 8);
  const ScreenDC screen;
  const RealizedPalette palette(screen.get(), Vn_CreatePaintPalette(screen.get(), picture));
  const DisplayModeScope scope(MODE_ORDERED_DITHER, mode);
  const RECT all = {0, 0, kWidth, kHeight};
  const auto paint = [&](uint32_t which) {
    const double start = ThreadSeconds();
    if (Vn_PaintDCEffect(screen.get(), picture, nullptr, nullptr, &all, nullptr, SRCCOPY, which) !=
        OK) {
      std::abort();
    }
    return ThreadSeconds() - start;
  };
  const auto plain = [&] {
    const double start = ThreadSeconds();
    Vn_PaintDC(screen.get(), picture, nullptr, nullptr, &all, nullptr, SRCCOPY);
    return ThreadSeconds() - start;
  };
  double fastest = 1e9, fastestPlain = 1e9, seconds = 0;
  for (auto _ : state) {
    const double time = paint(effect);
    seconds += time;
    fastest = std::min(fastest, time);
    state.PauseTiming();
    fastestPlain = std::min(fastestPlain, plain());
    state.ResumeTiming();
  }
  ReportRate(state, double{kWidth} * kHeight, seconds);
  state.counters["x plain"] = fastest / fastestPlain;
}

void Effects(benchmark::internal::Benchmark* bench) {
  bench->ArgName("effect")->Unit(benchmark::kMillisecond);
  for (const int effect :
       {EFFECT_ROWS_DOWN, EFFECT_COLUMNS_RIGHT, EFFECT_COLUMN_BLINDS_IN, EFFECT_DISSOLVE_COLUMNS,
        EFFECT_FRAMES_IN, EFFECT_SPIRAL_IN, EFFECT_DISSOLVE_16, EFFECT_DISSOLVE_2}) {
    bench->Arg(effect);
  }
}
void EffectDiffused(benchmark::State& state) { Effect(state, 24, 0); }
void EffectOrdered(benchmark::State& state) { Effect(state, 24, MODE_ORDERED_DITHER); }
void EffectDirect(benchmark::State& state) { Effect(state, 8, 0); }
BENCHMARK(EffectDiffused)->Apply(Effects);
BENCHMARK(EffectOrdered)->Apply(Effects);
BENCHMARK(EffectDirect)->Apply(Effects);

}  // namespace
}  // namespace vn::bench
