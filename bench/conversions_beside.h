// Conversions of a 12-megapixel picture's rows, ours beside a peer's: both from one piece of memory
// into another that is there.
#ifndef VNCORE_BENCH_CONVERSIONS_BESIDE_H
#define VNCORE_BENCH_CONVERSIONS_BESIDE_H

#include <memory>

#include "bench/turns_beside.h"
#include "color/fixed_palettes.h"
#include "color/row_converter.h"

namespace vn::bench {

// Whether both hold the same colours: the top bit of 16 and the fourth byte of 32 bits are free.
inline bool SameColors(const Plane& a, const Plane& b) {
  const uint32_t counts = a.bits == 16 ? 0x7FFF : 0xFFFFFF;
  for (int32_t y = 0; y < a.height; ++y) {
    for (int32_t x = 0; x < a.width; ++x) {
      if ((a.Pixel(x, y) ^ b.Pixel(x, y)) & counts) return false;
    }
  }
  return true;
}

// `colors`: of indexes; null for a gray ramp, which alone gives what a peer makes of grays.
// `convert(from, to)` is the peer's.
template <class Peer>
void ConvertBeside(benchmark::State& state, int32_t fromBits, int32_t toBits, const Peer& convert,
                   const RGBQUAD* colors = nullptr) {
  Picture picture(4272, 2848, fromBits);
  Plane from(picture.get()), ours(from.width, from.height, toBits), theirs = ours;
  const auto converter = std::make_unique<RowConverter>();
  const RGBQUAD* const table = colors ? colors : GrayRamp256.data();
  if (!converter->Prepare({static_cast<uint32_t>(fromBits), ORDER_BGR, table},
                          {static_cast<uint32_t>(toBits), ORDER_BGR, nullptr},
                          static_cast<size_t>(from.width))) {
    std::abort();
  }
  const auto run = [&] {
    for (int32_t y = 0; y < from.height; ++y) {
      converter->Convert(from.data() + int64_t{y} * from.stride,
                         ours.data() + int64_t{y} * ours.stride, static_cast<size_t>(from.width));
    }
  };
  run();
  convert(from, theirs);
  if (!colors && !SameColors(ours, theirs)) {
    state.SkipWithError("the peer gives other colours");
    return;
  }
  BesidePeer(state, double{1} * from.width * from.height, run, [&] { convert(from, theirs); });
}

}  // namespace vn::bench

#endif
