// Row conversion between all pairs of depths, on the rows of a picture.
#include <string>

#include <vncore/vncore.h>
#include "bench/against_memcpy.h"
#include "kernel/pixel_format.h"

namespace vn::bench {
namespace {

constexpr uint32_t kWidth = 4000;
constexpr uint32_t kRows = 1000;

uint32_t Bits(uint32_t depth) { return depth == BPP_GRAY ? 8 : depth; }

void Convert(benchmark::State& state, uint32_t from, uint32_t to) {
  const size_t stride = Vn_CalcConvertSize(kWidth, from, kWidth, to);
  std::vector<uint8_t> rows(stride * kRows);
  uint32_t noise = 1;
  for (uint8_t& byte : rows)
    byte = static_cast<uint8_t>((noise = noise * 1664525 + 1013904223) >> 24);
  // In place: every call after the first converts what the one before left, other pixels at the
  // same cost.
  CompareTouched(state, double{kWidth} * kRows, size_t{StrideOf(kWidth, Bits(from))} * kRows,
                 size_t{StrideOf(kWidth, Bits(to))} * kRows, [&] {
                   for (size_t y = 0; y < kRows; ++y) {
                     Vn_ConvertBuffer(rows.data() + y * stride, kWidth, from, to, ORDER_BGR,
                                      ORDER_BGR, nullptr, nullptr);
                   }
                   benchmark::ClobberMemory();
                 });
}

const bool registered = [] {
  for (const uint32_t from : {0u, 1u, 4u, 8u, 16u, 24u, 32u}) {
    for (const uint32_t to : {0u, 1u, 4u, 8u, 16u, 24u, 32u}) {
      if (from == to) continue;
      const std::string name = "Convert/" + std::to_string(from) + "/" + std::to_string(to);
      benchmark::RegisterBenchmark(name.c_str(), Convert, from, to)->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vn::bench
