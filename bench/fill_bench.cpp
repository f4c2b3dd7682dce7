// Filling a bitmap whole and through an elliptical region, against memset of the bytes written.
#include <cstring>
#include <vector>

#include "bench/against_memcpy.h"
#include "bench/pictures.h"

namespace vn::bench {
namespace {

void Fill(benchmark::State& state, bool ellipse) {
  const auto bits = static_cast<int32_t>(state.range(0));
  const auto width = static_cast<int32_t>(state.range(1));
  Picture picture(static_cast<uint32_t>(width), static_cast<uint32_t>(width) * 3 / 4, bits);
  if (ellipse) {
    const RECT box = {0, 0, width, picture->Height};
    Vn_SetBitmapRgnEllipse(picture, nullptr, &box, REGION_COMBINE_REPLACE);
  }
  uint32_t area = 0;
  Vn_GetBitmapRgnArea(picture, &area);
  const size_t bytes = size_t{area} * static_cast<uint32_t>(bits) / 8;
  std::vector<uint8_t> plain(bytes, 1);
  uint8_t value = 0;
  Compare(
      state, area, [&] { Vn_FillBitmap(picture, RGB(10, 120, 200)); },
      [&] {
        std::memset(plain.data(), ++value, bytes);
        benchmark::ClobberMemory();
      });
}

void FillWhole(benchmark::State& state) { Fill(state, false); }
void FillEllipse(benchmark::State& state) { Fill(state, true); }

BENCHMARK(FillWhole)
    ->ArgNames({"bits", "width"})
    ->ArgsProduct({{1, 4, 8, 16, 24, 32}, {2000, 4000}});
BENCHMARK(FillEllipse)->ArgNames({"bits", "width"})->ArgsProduct({{1, 8, 24, 32}, {2000, 4000}});

}  // namespace
}  // namespace vn::bench
