// Pillow's turns, timed by pillow_turn.py, beside ours. The two run one after the other: Pillow in
// a process of its own, the fastest of nine runs.
#include "bench/script_seconds.h"
#include "bench/turns_beside.h"

namespace vn::bench {
namespace {

void BesidePillow(benchmark::State& state, const char* turn, int32_t degrees100) {
  const auto bits = static_cast<int32_t>(state.range(0));
  Picture picture = PictureToTurn(bits);
  const double pixels = double{1} * picture->Width * picture->Height;
  const double theirs = SecondsOfScript(std::string(VNCORE_BENCH_PILLOW_TURN " ") + turn + " " +
                                        std::to_string(bits));
  BesideProcess(
      state, pixels,
      [&] { Vn_RotateBitmapFine(picture, degrees100, degrees100 == 9000, RGB(0, 0, 0)); }, theirs);
}
void Quarter(benchmark::State& state) { BesidePillow(state, "quarter", 9000); }
void Fine(benchmark::State& state) { BesidePillow(state, "fine", 1730); }

BENCHMARK(Quarter)
    ->Name("QuarterTurn/Pillow")
    ->ArgName("bits")
    ->Arg(32)
    ->UseManualTime()
    ->Iterations(9)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Fine)
    ->Name("FineTurn/Pillow")
    ->ArgName("bits")
    ->Arg(1)
    ->Arg(8)
    ->Arg(24)
    ->UseManualTime()
    ->Iterations(9)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
