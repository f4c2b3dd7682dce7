// Paints on the headless screen beside what they cannot do without: reading the rows that they
// fetch and writing, by memcpy, the bytes that the screen gets.
#include <algorithm>
#include <cstring>

#include "bench/beside_peer.h"
#include "bench/painting.h"
#include "kernel/pixel_format.h"

namespace vn::bench {
namespace {

constexpr int32_t kWidth = 2048, kHeight = 1536;

// Bits of the picture, of the screen, and the picture's size in percent of the screen's.
void Paint(benchmark::State& state, int32_t bits, int32_t deviceBits, int32_t percent) {
  Picture picture(kWidth * percent / 100, kHeight * percent / 100, bits);
  Painting painting(picture, kWidth, kHeight, deviceBits, 0, 0);
  const auto written = StrideOf(kWidth, static_cast<uint32_t>(deviceBits));
  const auto height = static_cast<uint32_t>(picture->Height);
  // Of a larger picture only the rows that are shown, and all their bytes.
  const uint32_t rows = std::min<uint32_t>(height, kHeight);
  std::vector<uint8_t> screen(size_t{written} * kHeight), row(written, 1);
  const BitmapLock lock(picture);
  const auto peer = [&] {
    uint64_t sum = 0, word;
    uint32_t fetched = 0;
    for (uint32_t y = 0; y < kHeight; ++y) {
      for (; uint64_t{fetched} * kHeight < uint64_t{y + 1} * rows; ++fetched) {
        const uint8_t* from =
            picture->Bits + uint64_t{fetched} * height / rows * picture->BytesPerLine;
        for (uint32_t i = 0; i + 8 <= picture->BytesPerLine; i += 8) {
          std::memcpy(&word, from + i, 8);
          sum += word;
        }
      }
      std::memcpy(screen.data() + size_t{y} * written, row.data(), written);
    }
    benchmark::DoNotOptimize(sum);
    benchmark::ClobberMemory();
  };
  BesidePeer(
      state, double{kWidth} * kHeight, [&] { painting.Paint(); }, peer,
      screen.size() + size_t{rows} * picture->BytesPerLine);
}

void Direct(benchmark::State& state) {
  const auto bits = static_cast<int32_t>(state.range(0));
  Paint(state, bits, std::min(bits, 24) == 16 ? 24 : std::min(bits, 24),
        static_cast<int32_t>(state.range(1)));
}
BENCHMARK(Direct)
    ->Name("Paint/direct/memcpy")
    ->ArgNames({"bits", "percent"})
    ->ArgsProduct({{1, 4, 8, 16, 24, 32}, {100, 50, 200}})
    ->UseManualTime()
    ->Iterations(21)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vn::bench
