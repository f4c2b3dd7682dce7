// Regions beside cairo's and Qt's: a union built call by call, the runs of all rows, one row asked.
#include <cairo.h>

#include <QRegion>
#include <vector>

#include "bench/beside_peer.h"
#include "bench/random_rects.h"
#include "kernel/platform_objects.h"
#include "region/region_union.h"

namespace vn::bench {
namespace {

struct Selected : BitmapHandle {
  explicit Selected(int32_t side) : BitmapHandle{} { Width = Height = side; }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() { Vn_FreeBitmapRgn(this); }
};

constexpr int32_t kPlane = 16384 + 2000;  // nothing is cut off

void Union1000(benchmark::State& state) {
  const std::vector<RECT> rects = RandomRects(1000, static_cast<int32_t>(state.range(0)));
  uint32_t area = 0;
  const auto ours = [&] {
    Selected bitmap(kPlane);
    Vn_SetBitmapRgnRect(&bitmap, nullptr, rects.data(), REGION_COMBINE_REPLACE);
    for (const RECT& rect : rects)
      Vn_SetBitmapRgnRect(&bitmap, nullptr, &rect, REGION_COMBINE_OR);
    Vn_GetBitmapRgnArea(&bitmap, &area);
  };
  uint32_t theirs = 0;
  const auto cairo = [&] {
    cairo_region_t* const all = cairo_region_create();
    for (const RECT& rect : rects) {
      const cairo_rectangle_int_t one = {rect.left, rect.top, rect.right - rect.left,
                                         rect.bottom - rect.top};
      cairo_region_union_rectangle(all, &one);
    }
    theirs = 0;
    cairo_rectangle_int_t one;
    for (int i = 0; i < cairo_region_num_rectangles(all); ++i) {
      cairo_region_get_rectangle(all, i, &one);
      theirs += static_cast<uint32_t>(one.width) * static_cast<uint32_t>(one.height);
    }
    state.counters["rects"] = cairo_region_num_rectangles(all);
    cairo_region_destroy(all);
  };
  BesidePeer(state, 1000, ours, cairo);
  if (area != theirs) state.SkipWithError("the regions differ");
}
BENCHMARK(Union1000)
    ->Name("Region/union/cairo")
    ->ArgName("most")
    ->Arg(40)
    ->Arg(400)
    ->Arg(2000)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

// The same pixels for both: an ellipse with the dots of a board cut out of it.
struct Shape {
  static constexpr int32_t kSide = 1024;
  explicit Shape(int32_t raster) : ours(kSide) {
    RegionUnion dots;
    for (int32_t y = 0; y < kSide; y += raster) {
      for (int32_t x = y / raster % 2 * raster; x < kSide; x += 2 * raster)
        dots.Add({x, y, x + raster, y + raster});
    }
    const OwnedObject<HRGN> board(dots.Finish());
    const RECT box = {0, 0, kSide, kSide};
    Vn_SetBitmapRgnEllipse(&ours, nullptr, &box, REGION_COMBINE_REPLACE);
    Vn_SetBitmapRgnHandle(&ours, nullptr, board.get(), REGION_COMBINE_AND);
    HRGN cut = nullptr;
    Vn_GetBitmapRgnHandle(&ours, nullptr, &cut);
    const OwnedObject<HRGN> owned(cut);
    std::vector<uint32_t> bytes(GetRegionData(cut, 0, nullptr) / 4 + 1);
    auto* const data = reinterpret_cast<RGNDATA*>(bytes.data());
    GetRegionData(cut, static_cast<DWORD>(bytes.size() * 4), data);
    const auto* rects = reinterpret_cast<const RECT*>(data->Buffer);
    std::vector<QRect> list;
    for (DWORD i = 0; i < data->rdh.nCount; ++i) {
      list.emplace_back(rects[i].left, rects[i].top, rects[i].right - rects[i].left,
                        rects[i].bottom - rects[i].top);
    }
    qt.setRects(list.data(), static_cast<int>(list.size()));
  }

  Selected ours;
  QRegion qt;
  int32_t runs[2 * kSide];
};

// Sums that a wrong run would change.
struct Sum {
  void Add(int32_t left, int32_t right) { value = value * 3 + static_cast<uint32_t>(left ^ right); }
  uint32_t value = 0;
};

void AllRows(benchmark::State& state) {
  Shape shape(static_cast<int32_t>(state.range(0)));
  int32_t theirRuns[2 * Shape::kSide];
  const auto ours = [&] {
    for (int32_t y = 0; y < Shape::kSide; ++y) {
      int32_t count = 0;
      Vn_GetBitmapClipSegments(&shape.ours, y, shape.runs, &count);
      benchmark::DoNotOptimize(shape.runs[0]);
      benchmark::DoNotOptimize(count);
    }
  };
  // A cursor goes along, so nothing is searched for.
  const auto qt = [&] {
    auto band = shape.qt.begin();
    for (int32_t y = 0; y < Shape::kSide; ++y) {
      while (band != shape.qt.end() && band->bottom() < y)
        ++band;
      int32_t count = 0;
      for (auto at = band; at != shape.qt.end() && at->top() <= y; ++at) {
        theirRuns[count++] = at->left();
        theirRuns[count++] = at->right() + 1;
      }
      benchmark::DoNotOptimize(theirRuns[0]);
      benchmark::DoNotOptimize(count);
    }
  };
  BesidePeer(state, Shape::kSide, ours, qt);
}

void OneRow(benchmark::State& state) {
  Shape shape(static_cast<int32_t>(state.range(0)));
  int32_t row = 0;
  Sum our, their;
  const auto next = [&] { row = (row + 389) % Shape::kSide; };
  const auto ours = [&] {
    for (int32_t i = 0; i < Shape::kSide; ++i) {
      next();
      int32_t count = 0;
      Vn_GetBitmapClipSegments(&shape.ours, row, shape.runs, &count);
      for (int32_t n = 0; n < count; n += 2)
        our.Add(shape.runs[n], shape.runs[n + 1]);
    }
  };
  const auto qt = [&] {
    for (int32_t i = 0; i < Shape::kSide; ++i) {
      next();
      const QRegion runs = shape.qt.intersected(QRect(0, row, Shape::kSide, 1));
      for (const QRect& run : runs)
        their.Add(run.left(), run.right() + 1);
    }
  };
  BesidePeer(state, Shape::kSide, ours, qt);
  if (our.value != their.value) state.SkipWithError("the runs differ");
}

// By the side of the dots.
void Dots(benchmark::internal::Benchmark* bench) {
  bench->ArgName("dots")->Arg(2)->Arg(16)->UseManualTime()->Iterations(15);
}
BENCHMARK(AllRows)->Name("Region/rows/Qt")->Apply(Dots)->Unit(benchmark::kMicrosecond);
BENCHMARK(OneRow)->Name("Region/row/Qt")->Apply(Dots)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vn::bench
