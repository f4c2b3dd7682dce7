// All dithering methods to the fixed palettes on a 12-megapixel picture.
#include <string>

#include "bench/against_memcpy.h"
#include "bench/photograph_bitmap.h"

namespace vn::bench {
namespace {

constexpr const char* kMethods[] = {"nearest", "floyd-steinberg", "stucki",
                                    "burkes",  "sierra",          "stevenson-arce",
                                    "jarvis",  "ordered",         "clustered"};

void Fixed(benchmark::State& state, uint32_t bits, uint32_t method) {
  PhotographBitmap bitmap;
  Reduce(state, bitmap, bits, RES_FIXED_PALETTE | RES_DITHER_METHOD(method));
}

const bool registered = [] {
  for (const uint32_t bits : {8u, 4u, 1u}) {
    for (uint32_t method = 0; method < std::size(kMethods); ++method) {
      const std::string name = "Fixed" + std::to_string(1u << bits) + "/" + kMethods[method];
      benchmark::RegisterBenchmark(name.c_str(), Fixed, bits, method)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace vn::bench
