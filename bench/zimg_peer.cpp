// zimg's dithering of planes, beside ours of the same picture: three channels of 8 bits to 3 beside
// 3, 3 and 2 bits in a byte, and to 1 bit by gray, its own of three channels or a plane that is gray
// already. It writes planes that are there; so do ours where rows are ordered, else ours make the
// result.
#include <zimg.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "bench/beside_peer.h"
#include "bench/painting.h"
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

struct ZimgForm {
  uint32_t from, to;  // channels
  uint32_t bits;      // of one, of the result
  zimg_dither_type_e dither;
  uint32_t shrink = 1;  // parts of the size that stay, by the nearest pixels
};
// As ours in 8 bits; to 1 bit by gray.
ZimgForm ColorsOrGray(uint32_t bits, zimg_dither_type_e dither) {
  return {3, bits == 8 ? 3u : 1, bits == 8 ? 3u : 1, dither};
}

class Zimg {
 public:
  Zimg(const Photograph& photograph, const ZimgForm& form)
      : form_(form),
        from_(photograph.width, photograph.height, form.from),
        to_(photograph.width / form.shrink, photograph.height / form.shrink, form.to) {
    for (size_t y = 0; y < photograph.height; ++y) {
      for (size_t x = 0; x < photograph.width; ++x) {
        for (uint32_t i = 0; i < form.from; ++i) {
          from_.Plane(i)[y * from_.stride() + x] =
              photograph.pixels[y * photograph.RowBytes() + 3 * x + i];
        }
      }
    }
    zimg_image_format source = FormatOf(form.from), target = FormatOf(form.to);
    source.width = photograph.width;
    source.height = photograph.height;
    target.width = photograph.width / form.shrink;
    target.height = photograph.height / form.shrink;
    target.depth = form.bits;
    zimg_graph_builder_params how;
    zimg_graph_builder_params_default(&how, ZIMG_API_VERSION);
    how.resample_filter = how.resample_filter_uv = ZIMG_RESIZE_POINT;
    how.dither_type = form.dither;
    graph_.reset(zimg_filter_graph_build(&source, &target, &how));
    size_t bytes = 0;
    if (!graph_ || zimg_filter_graph_get_tmp_size(graph_.get(), &bytes)) std::abort();
    scratch_.reset(static_cast<uint8_t*>(std::aligned_alloc(64, (bytes + 63) / 64 * 64 + 64)));
  }
  void Run() {
    zimg_image_buffer_const source = {ZIMG_API_VERSION, {}};
    zimg_image_buffer target = {ZIMG_API_VERSION, {}};
    for (uint32_t i = 0; i < form_.from; ++i)
      source.plane[i] = {from_.Plane(i), static_cast<ptrdiff_t>(from_.stride()), ZIMG_BUFFER_MAX};
    for (uint32_t i = 0; i < form_.to; ++i)
      target.plane[i] = {to_.Plane(i), static_cast<ptrdiff_t>(to_.stride()), ZIMG_BUFFER_MAX};
    if (zimg_filter_graph_process(graph_.get(), &source, &target, scratch_.get(), nullptr, nullptr,
                                  nullptr, nullptr)) {
      std::abort();
    }
  }

 private:
  static zimg_image_format FormatOf(uint32_t channels) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.pixel_type = ZIMG_PIXEL_BYTE;
    format.color_family = channels == 3 ? ZIMG_COLOR_RGB : ZIMG_COLOR_GREY;
    format.matrix_coefficients = channels == 3 ? ZIMG_MATRIX_RGB : ZIMG_MATRIX_709;
    format.pixel_range = ZIMG_RANGE_FULL;
    format.depth = 8;
    return format;
  }

  struct FreeGraph {
    void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
  };
  struct FreeMemory {
    void operator()(uint8_t* memory) const { std::free(memory); }
  };
  ZimgForm form_;
  Planes from_, to_;
  std::unique_ptr<zimg_filter_graph, FreeGraph> graph_;
  std::unique_ptr<uint8_t, FreeMemory> scratch_;
};

// Bytes of the photograph's rows that are read, and of the result.
size_t Moved(uint32_t bits, uint32_t shrink) {
  const Photograph& photograph = ThePhotograph();
  return photograph.RowBytes() * photograph.height / shrink +
         static_cast<size_t>(photograph.Pixels()) / shrink / shrink * bits / 8;
}

void Ordered(benchmark::State& state, uint32_t bits, const ZimgForm& form) {
  const Photograph& photograph = ThePhotograph();
  Zimg peer(photograph, form);
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
      [&] { peer.Run(); }, Moved(bits, 1));
}
// Beside Floyd and Steinberg's filter, the only one that it has.
void Diffused(benchmark::State& state, uint32_t bits, uint32_t method, const ZimgForm& form) {
  PhotographBitmap bitmap;
  Zimg peer(ThePhotograph(), form);
  BesidePeer(
      state, ThePhotograph().Pixels(),
      [&] { ReduceOnce(bitmap, bits, RES_FIXED_PALETTE | RES_DITHER_METHOD(method)); },
      [&] { peer.Run(); }, Moved(bits, 1));
}

// On a screen of half the size.
void Paint(benchmark::State& state, uint32_t bits, uint32_t mode, ZimgForm form) {
  PhotographBitmap bitmap;
  const Photograph& photograph = ThePhotograph();
  form.shrink = 2;
  Zimg peer(photograph, form);
  Painting painting(bitmap, static_cast<int32_t>(photograph.width / 2),
                    static_cast<int32_t>(photograph.height / 2), static_cast<int32_t>(bits), mode,
                    0);
  BesidePeer(
      state, photograph.Pixels() / 4, [&] { painting.Paint(); }, [&] { peer.Run(); },
      Moved(bits, 2));
}

const bool registered = [] {
  const auto add = [](const char* name, auto work, auto... how) {
    benchmark::RegisterBenchmark(name, work, how...)
        ->UseManualTime()
        ->Iterations(15)
        ->Unit(benchmark::kMillisecond);
  };
  constexpr auto kPattern = ZIMG_DITHER_ORDERED, kErrors = ZIMG_DITHER_ERROR_DIFFUSION;
  const ZimgForm colors = ColorsOrGray(8, kErrors);
  add("Ordered24/8/zimg", Ordered, 8u, ColorsOrGray(8, kPattern));
  add("Ordered24/1/zimg", Ordered, 1u, ColorsOrGray(1, kPattern));
  add("Ordered24/1/zimg-grays", Ordered, 1u, ZimgForm{1, 1, 1, kPattern});
  add("Diffused24/8/zimg", Diffused, 8u, DITHER_FLOYD_STEINBERG, colors);
  add("Diffused24/1/zimg", Diffused, 1u, DITHER_FLOYD_STEINBERG, ZimgForm{1, 1, 1, kErrors});
  add("Diffused24/8/stucki/zimg", Diffused, 8u, DITHER_STUCKI, colors);
  add("Diffused24/8/burkes/zimg", Diffused, 8u, DITHER_BURKES, colors);
  add("Diffused24/8/sierra/zimg", Diffused, 8u, DITHER_SIERRA, colors);
  add("Diffused24/8/stevenson-arce/zimg", Diffused, 8u, DITHER_STEVENSON_ARCE, colors);
  add("Diffused24/8/jarvis/zimg", Diffused, 8u, DITHER_JARVIS, colors);
  add("Paint/ordered/8/zimg", Paint, 8u, uint32_t{MODE_ORDERED_DITHER}, ColorsOrGray(8, kPattern));
  add("Paint/diffused/8/zimg", Paint, 8u, 0u, colors);
  return true;
}();

}  // namespace
}  // namespace vn::bench
