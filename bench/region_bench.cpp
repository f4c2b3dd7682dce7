// Regions: unions one rectangle at a time, beside the pixman library where it is installed; rows of
// segments; rotation.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include <vncore/vncore.h>
#include "bench/random_rects.h"
#include "kernel/platform_objects.h"
#include "region/region_motion.h"
#include "region/region_rows.h"
#include "region/region_union.h"
#ifdef VNCORE_HAVE_PIXMAN
#include <pixman.h>
#endif

namespace vn {
namespace {

using bench::RandomRects;

void UnionHeadless(benchmark::State& state) {
  const std::vector<RECT> rects = RandomRects(10000, static_cast<int32_t>(state.range(0)));
  DWORD bytes = 0;
  for (auto _ : state) {
    const OwnedObject<HRGN> all(CreateRectRgn(0, 0, 0, 0)), one(CreateRectRgn(0, 0, 0, 0));
    for (const RECT& rect : rects) {
      SetRectRgn(one.get(), rect.left, rect.top, rect.right, rect.bottom);
      CombineRgn(all.get(), all.get(), one.get(), RGN_OR);
    }
    bytes = GetRegionData(all.get(), 0, nullptr);
  }
  state.counters["rects"] = (bytes - sizeof(RGNDATAHEADER)) / sizeof(RECT);
}
BENCHMARK(UnionHeadless)->Arg(40)->Arg(400)->Arg(4000)->Unit(benchmark::kMillisecond);

#ifdef VNCORE_HAVE_PIXMAN
void UnionPixman(benchmark::State& state) {
  const std::vector<RECT> rects = RandomRects(10000, static_cast<int32_t>(state.range(0)));
  int count = 0;
  for (auto _ : state) {
    pixman_region32_t all;
    pixman_region32_init(&all);
    for (const RECT& rect : rects) {
      pixman_region32_t one;
      pixman_region32_init_rect(&one, rect.left, rect.top,
                                static_cast<unsigned>(rect.right - rect.left),
                                static_cast<unsigned>(rect.bottom - rect.top));
      pixman_region32_union(&all, &all, &one);
      pixman_region32_fini(&one);
    }
    count = pixman_region32_n_rects(&all);
    pixman_region32_fini(&all);
  }
  state.counters["rects"] = count;
}
BENCHMARK(UnionPixman)->Arg(40)->Arg(400)->Arg(4000)->Unit(benchmark::kMillisecond);
#endif

// A board of single pixels: `side` * `side` / 2 rectangles.
BitmapHandle Board(int32_t side) {
  RegionUnion board;
  for (int32_t y = 0; y < side; ++y) {
    for (int32_t x = y % 2; x < side; x += 2)
      board.Add({x, y, x + 1, y + 1});
  }
  BitmapHandle bitmap{};
  bitmap.Width = bitmap.Height = side;
  const OwnedObject<HRGN> region(board.Finish());
  Vn_SetBitmapRgnHandle(&bitmap, nullptr, region.get(), REGION_COMBINE_REPLACE);
  return bitmap;
}

// All rows of a region once: through the library's cursor, and through the public function.
void SegmentRows(benchmark::State& state) {
  BitmapHandle bitmap = Board(448);
  std::vector<int32_t> runs(ClipSegmentsCapacity(&bitmap));
  for (auto _ : state) {
    RegionRows rows(bitmap.Region);
    for (int32_t y = 0; y < bitmap.Height; ++y) {
      benchmark::DoNotOptimize(rows.Segments(y, runs.data()));
    }
  }
  Vn_FreeBitmapRgn(&bitmap);
}
BENCHMARK(SegmentRows)->Unit(benchmark::kMicrosecond);

void SegmentRowsPublic(benchmark::State& state) {
  BitmapHandle bitmap = Board(448);
  std::vector<int32_t> runs(ClipSegmentsCapacity(&bitmap));
  for (auto _ : state) {
    for (int32_t y = 0; y < bitmap.Height; ++y) {
      int32_t count = 0;
      Vn_GetBitmapClipSegments(&bitmap, y, runs.data(), &count);
      benchmark::DoNotOptimize(count);
    }
  }
  Vn_FreeBitmapRgn(&bitmap);
}
BENCHMARK(SegmentRowsPublic)->Unit(benchmark::kMicrosecond);

// 100,000 rectangles turned by 30 degrees.
void Rotate(benchmark::State& state) {
  BitmapHandle source = Board(448);
  for (auto _ : state) {
    BitmapHandle turned = source;
    CopyRegion(&turned, &source, 0, 0);
    turned.Width = turned.Height = 612;
    RotateRegion(&turned, 448, 448, 3000);
    Vn_FreeBitmapRgn(&turned);
  }
  Vn_FreeBitmapRgn(&source);
}
BENCHMARK(Rotate)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn
