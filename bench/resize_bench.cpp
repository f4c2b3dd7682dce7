// Resizing a 12-megapixel picture, against memcpy of the source rows that are read and of the
// result.
#include <algorithm>

#include "bench/against_memcpy.h"
#include "bench/pictures.h"

namespace vn::bench {
namespace {

// The larger of the two is 4000 by 3000.
void ResizeBitmap(benchmark::State& state) {
  const auto bits = static_cast<int32_t>(state.range(0));
  const auto percent = static_cast<uint32_t>(state.range(1));
  const uint32_t most = std::max(percent, 100u);
  const uint32_t width = 4000 * 100 / most, height = 3000 * 100 / most;
  Picture source(width, height, bits);
  Picture result(width * percent / 100, height * percent / 100, bits);
  const auto rows = static_cast<size_t>(std::min(source->Height, result->Height));
  CompareTouched(state, double{1} * result->Width * result->Height, source->BytesPerLine * rows,
                 result->DataSize, [&] { Vn_ResizeBitmap(source, result); });
}
BENCHMARK(ResizeBitmap)
    ->ArgNames({"bits", "percent"})
    ->ArgsProduct({{1, 4, 8, 16, 24, 32}, {37, 230}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
