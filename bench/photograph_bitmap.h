// The picture of the colour benchmarks as a bitmap, and its reduction under the clock.
#ifndef VNCORE_BENCH_PHOTOGRAPH_BITMAP_H
#define VNCORE_BENCH_PHOTOGRAPH_BITMAP_H

#include <cstdlib>

#include <vncore/vncore.h>
#include "bench/against_memcpy.h"
#include "bench/photograph.h"
#include "kernel/guards.h"

namespace vn::bench {

class PhotographBitmap {
 public:
  PhotographBitmap() {
    const Photograph& photograph = ThePhotograph();
    if (Vn_CreateBitmap(&handle_, STORAGE_AUTO, photograph.width, photograph.height, 24, ORDER_BGR,
                        nullptr, VIEW_BOTTOM_FIRST) != OK) {
      std::abort();
    }
    const BitmapLock lock(&handle_);
    const auto rowBytes = static_cast<uint32_t>(photograph.RowBytes());
    for (uint32_t y = 0; y < photograph.height; ++y) {
      Vn_PutBitmapRow(&handle_, photograph.pixels.data() + size_t{y} * rowBytes, y, rowBytes);
    }
  }
  PhotographBitmap(const PhotographBitmap&) = delete;
  PhotographBitmap& operator=(const PhotographBitmap&) = delete;
  ~PhotographBitmap() { Vn_FreeBitmap(&handle_); }

  BitmapHandle* operator->() { return &handle_; }
  operator BitmapHandle*() { return &handle_; }

 private:
  BitmapHandle handle_{};
};

inline void ReduceOnce(BitmapHandle* bitmap, uint32_t bits, uint32_t flags) {
  BitmapHandle reduced;
  if (Vn_ColorResBitmap(bitmap, &reduced, bits, flags, nullptr, 0, nullptr, 0) != OK) std::abort();
  Vn_FreeBitmap(&reduced);
}

// Times Vn_ColorResBitmap, the making of the result's storage and palette included.
inline void Reduce(benchmark::State& state, BitmapHandle* bitmap, uint32_t bits, uint32_t flags) {
  const size_t read = size_t{bitmap->BytesPerLine} * static_cast<uint32_t>(bitmap->Height);
  const double pixels = ThePhotograph().Pixels();
  const auto written = static_cast<size_t>(pixels * bits / 8);
  CompareTouched(state, pixels, read, written, [&] { ReduceOnce(bitmap, bits, flags); });
}

}  // namespace vn::bench

#endif
