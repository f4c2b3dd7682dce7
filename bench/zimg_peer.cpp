// zimg's dithering of planes, beside ours of the same picture: three channels of 8 bits to 3 beside
// 3, 3 and 2 bits in a byte, and one beside 1 bit by gray. Ordered, both write into memory that is
// there; diffused, ours make the result.
#include <zimg.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "bench/beside_peer.h"
#include "bench/photograph_bitmap.h"
#include "color/ordered_rows.h"
#include "color/threshold_matrices.h"
#include "kernel/pixel_format.h"

namespace vn::bench {
namespace {

// Planes with aligned rows.
class Planes {
 public:
  Planes(uint32_t width, uint32_t height, uint32_t count)
      : stride_((width + 63) / 64 * 64), plane_(stride_ * height), bytes_(plane_ * count + 64) {}
  uint8_t* Plane(uint32_t i) {
    const auto start = reinterpret_cast<uintptr_t>(bytes_.data());
    return bytes_.data() + (-start & 63) + plane_ * i;
  }
  size_t stride() const { return stride_; }

 private:
  size_t stride_, plane_;
  std::vector<uint8_t> bytes_;
};

class Zimg {
 public:
  // To 8 bits: three planes of 3 bits; to 1 bit: one plane.
  Zimg(const Photograph& photograph, uint32_t targetBits, zimg_dither_type_e dither)
      : Zimg(photograph, dither, targetBits == 8 ? 3 : 1) {}
  void Run() {
    zimg_image_buffer_const source = {ZIMG_API_VERSION, {}};
    zimg_image_buffer target = {ZIMG_API_VERSION, {}};
    for (uint32_t i = 0; i < channels_; ++i) {
      source.plane[i] = {from_.Plane(i), static_cast<ptrdiff_t>(from_.stride()), ZIMG_BUFFER_MAX};
      target.plane[i] = {to_.Plane(i), static_cast<ptrdiff_t>(to_.stride()), ZIMG_BUFFER_MAX};
    }
    if (zimg_filter_graph_process(graph_.get(), &source, &target, scratch_.get(), nullptr, nullptr,
                                  nullptr, nullptr)) {
      std::abort();
    }
  }

 private:
  // To as many bits as channels.
  Zimg(const Photograph& photograph, zimg_dither_type_e dither, uint32_t channels)
      : channels_(channels),
        from_(photograph.width, photograph.height, channels),
        to_(photograph.width, photograph.height, channels) {
    for (size_t y = 0; y < photograph.height; ++y) {
      for (size_t x = 0; x < photograph.width; ++x) {
        for (uint32_t i = 0; i < channels; ++i) {
          from_.Plane(i)[y * from_.stride() + x] =
              photograph.pixels[y * photograph.RowBytes() + 3 * x + i];
        }
      }
    }
    zimg_image_format source;
    zimg_image_format_default(&source, ZIMG_API_VERSION);
    source.width = photograph.width;
    source.height = photograph.height;
    source.pixel_type = ZIMG_PIXEL_BYTE;
    source.color_family = channels == 3 ? ZIMG_COLOR_RGB : ZIMG_COLOR_GREY;
    if (channels == 3) source.matrix_coefficients = ZIMG_MATRIX_RGB;
    source.pixel_range = ZIMG_RANGE_FULL;
    source.depth = 8;
    zimg_image_format target = source;
    target.depth = channels;
    zimg_graph_builder_params how;
    zimg_graph_builder_params_default(&how, ZIMG_API_VERSION);
    how.dither_type = dither;
    graph_.reset(zimg_filter_graph_build(&source, &target, &how));
    size_t bytes = 0;
    if (!graph_ || zimg_filter_graph_get_tmp_size(graph_.get(), &bytes)) std::abort();
    scratch_.reset(static_cast<uint8_t*>(std::aligned_alloc(64, (bytes + 63) / 64 * 64 + 64)));
  }
  struct FreeGraph {
    void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
  };
  struct FreeMemory {
    void operator()(uint8_t* memory) const { std::free(memory); }
  };
  uint32_t channels_;
  Planes from_, to_;
  std::unique_ptr<zimg_filter_graph, FreeGraph> graph_;
  std::unique_ptr<uint8_t, FreeMemory> scratch_;
};

void Ordered(benchmark::State& state, uint32_t bits) {
  const Photograph& photograph = ThePhotograph();
  Zimg peer(photograph, bits, ZIMG_DITHER_ORDERED);
  const OrderedRows ours(24, false, nullptr, static_cast<int32_t>(bits));
  std::vector<uint8_t> result(size_t{StrideOf(photograph.width, bits)} * photograph.height);
  BesidePeer(
      state, photograph.Pixels(),
      [&] {
        for (size_t y = 0; y < photograph.height; ++y) {
          ours.Dither(photograph.pixels.data() + y * photograph.RowBytes(), 0, OrderedMatrix[y % 8],
                      result.data() + y * StrideOf(photograph.width, bits), photograph.width);
        }
      },
      [&] { peer.Run(); });
}
BENCHMARK_CAPTURE(Ordered, to8, 8)
    ->Name("Ordered24/8/zimg")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Ordered, to1, 1)
    ->Name("Ordered24/1/zimg")
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

// Beside Floyd and Steinberg's filter, the only one that it has.
void Diffused(benchmark::State& state, uint32_t bits, uint32_t method) {
  PhotographBitmap bitmap;
  Zimg peer(ThePhotograph(), bits, ZIMG_DITHER_ERROR_DIFFUSION);
  BesidePeer(
      state, ThePhotograph().Pixels(),
      [&] { ReduceOnce(bitmap, bits, RES_FIXED_PALETTE | RES_DITHER_METHOD(method)); },
      [&] { peer.Run(); });
}
const bool registered = [] {
  const auto add = [](uint32_t bits, uint32_t method, const char* name) {
    benchmark::RegisterBenchmark(name, Diffused, bits, method)
        ->UseManualTime()
        ->Iterations(9)
        ->Unit(benchmark::kMillisecond);
  };
  add(8, DITHER_FLOYD_STEINBERG, "Diffused24/8/zimg");
  add(1, DITHER_FLOYD_STEINBERG, "Diffused24/1/zimg");
  add(8, DITHER_STUCKI, "Diffused24/8/stucki/zimg");
  add(8, DITHER_BURKES, "Diffused24/8/burkes/zimg");
  add(8, DITHER_SIERRA, "Diffused24/8/sierra/zimg");
  add(8, DITHER_STEVENSON_ARCE, "Diffused24/8/stevenson-arce/zimg");
  add(8, DITHER_JARVIS, "Diffused24/8/jarvis/zimg");
  return true;
}();

}  // namespace
}  // namespace vn::bench
