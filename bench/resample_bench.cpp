// Resampling and shear of a photograph's size beside their peers, where those are installed. Ours
// make the result's storage and replace the bitmap; peers write into a buffer that is there, but
// Qt and Leptonica, which make their results as we do.
#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

#include "bench/pictures.h"
#include "bench/thread_clock.h"
#include "kernel/owned_bitmap.h"
#ifdef VNCORE_HAVE_LIBYUV
#include <libyuv/scale.h>
#include <libyuv/scale_argb.h>
#include <libyuv/scale_rgb.h>
#endif
#ifdef VNCORE_HAVE_QT
#include <QImage>
#endif
#ifdef VNCORE_HAVE_LEPTONICA
#include <leptonica/allheaders.h>
#endif
#ifdef VNCORE_HAVE_SWSCALE
extern "C" {
#include <libswscale/swscale.h>
}
#endif

namespace vn::bench {
namespace {

constexpr int kWidth = 4272, kHeight = 2848;

constexpr int Percent(int side, int64_t percent) { return static_cast<int>(side * percent / 100); }

// One call of `work` for each iteration, `prepare` outside the clock. Rates are of the larger
// picture's pixels.
void Measure(benchmark::State& state, int64_t percent, const std::function<void()>& prepare,
             const std::function<void()>& work) {
  double seconds = 0;
  for (auto _ : state) {
    prepare();
    const double start = ThreadSeconds();
    work();
    const double once = ThreadSeconds() - start;
    state.SetIterationTime(once);
    seconds += once;
  }
  const int64_t larger = std::max<int64_t>(percent, 100);
  ReportRate(state, double{1} * Percent(kWidth, larger) * Percent(kHeight, larger), seconds);
}

// `operate` on a fresh copy of the picture.
void Ours(benchmark::State& state, int64_t percent, int32_t bits,
          VnStatus (*operate)(BitmapHandle*, int64_t)) {
  Picture source(kWidth, kHeight, bits == 8 ? 0 : bits);
  std::unique_ptr<OwnedBitmap> copy;
  Measure(
      state, percent,
      [&] {
        copy = std::make_unique<OwnedBitmap>();
        if (Vn_CopyBitmap(*copy, source) != OK) std::abort();
      },
      [&] {
        if (operate(*copy, percent) != OK) std::abort();
      });
}

void Resample(benchmark::State& state) {
  Ours(state, state.range(1), static_cast<int32_t>(state.range(0)),
       [](BitmapHandle* bitmap, int64_t percent) {
         return Vn_ResampleBitmap(bitmap, Percent(kWidth, percent), Percent(kHeight, percent));
       });
}
BENCHMARK(Resample)
    ->ArgNames({"bits", "percent"})
    ->ArgsProduct({{1, 8, 24, 32}, {37, 230}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void Shear20(benchmark::State& state) {
  Ours(state, 100, static_cast<int32_t>(state.range(0)),
       [](BitmapHandle* bitmap, int64_t) { return Vn_ShearBitmap(bitmap, 2000, 1, 0xFFFFFF); });
}
BENCHMARK(Shear20)->ArgName("bits")->Args({1})->Args({8})->Args({24})->UseManualTime()->Unit(
    benchmark::kMillisecond);

// The pixels of a picture, and room for a result, as peers take them.
[[maybe_unused]] std::vector<uint8_t> Pixels(int64_t percent, int bytes) {
  std::vector<uint8_t> pixels(size_t{1} * static_cast<size_t>(Percent(kWidth, percent)) *
                              static_cast<size_t>(Percent(kHeight, percent)) *
                              static_cast<size_t>(bytes));
  uint32_t noise = 1;
  for (uint8_t& byte : pixels) {
    noise = noise * 1664525 + 1013904223;
    byte = static_cast<uint8_t>(noise >> 24);
  }
  return pixels;
}

// A peer's resampling from one buffer to another.
using Scaler = std::function<void(const uint8_t* from, uint8_t* to, int width, int height)>;
[[maybe_unused]] void Peer(benchmark::State& state, int bytes, const Scaler& scale) {
  const int64_t percent = state.range(0);
  const auto from = Pixels(100, bytes);
  auto to = Pixels(percent, bytes);
  Measure(
      state, percent, [] {},
      [&] { scale(from.data(), to.data(), Percent(kWidth, percent), Percent(kHeight, percent)); });
}

#define VNCORE_PEER(function, name)                                                              \
  BENCHMARK(function)->Name(name)->ArgName("percent")->Arg(37)->Arg(230)->UseManualTime()->Unit( \
      benchmark::kMillisecond)

#ifdef VNCORE_HAVE_LIBYUV
void LibyuvGray(benchmark::State& state) {
  Peer(state, 1, [](const uint8_t* from, uint8_t* to, int width, int height) {
    libyuv::ScalePlane(from, kWidth, kWidth, kHeight, to, width, width, height, libyuv::kFilterBox);
  });
}
VNCORE_PEER(LibyuvGray, "Resample/libyuv/bits:8");
void LibyuvRgb(benchmark::State& state) {
  Peer(state, 3, [](const uint8_t* from, uint8_t* to, int width, int height) {
    libyuv::RGBScale(from, kWidth * 3, kWidth, kHeight, to, width * 3, width, height,
                     libyuv::kFilterBox);
  });
}
VNCORE_PEER(LibyuvRgb, "Resample/libyuv/bits:24");
void LibyuvArgb(benchmark::State& state) {
  Peer(state, 4, [](const uint8_t* from, uint8_t* to, int width, int height) {
    libyuv::ARGBScale(from, kWidth * 4, kWidth, kHeight, to, width * 4, width, height,
                      libyuv::kFilterBox);
  });
}
VNCORE_PEER(LibyuvArgb, "Resample/libyuv/bits:32");
#endif

#ifdef VNCORE_HAVE_QT
void Qt(benchmark::State& state, QImage::Format format, int bytes) {
  QImage result;
  Peer(state, bytes, [&](const uint8_t* from, uint8_t*, int width, int height) {
    const QImage image(from, kWidth, kHeight, kWidth * bytes, format);
    result = image.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  });
}
void QtGray(benchmark::State& state) { Qt(state, QImage::Format_Grayscale8, 1); }
VNCORE_PEER(QtGray, "Resample/qt/bits:8");
void QtRgb(benchmark::State& state) { Qt(state, QImage::Format_RGB888, 3); }
VNCORE_PEER(QtRgb, "Resample/qt/bits:24");
#endif

#ifdef VNCORE_HAVE_SWSCALE
// Area averages when shrinking, bilinear when enlarging.
void Swscale(benchmark::State& state, AVPixelFormat format, int bytes) {
  const int64_t percent = state.range(0);
  SwsContext* const context =
      sws_getContext(kWidth, kHeight, format, Percent(kWidth, percent), Percent(kHeight, percent),
                     format, percent < 100 ? SWS_AREA : SWS_BILINEAR, nullptr, nullptr, nullptr);
  if (!context) std::abort();
  Peer(state, bytes, [&](const uint8_t* from, uint8_t* to, int width, int) {
    const uint8_t* const sources[4] = {from, nullptr, nullptr, nullptr};
    uint8_t* const targets[4] = {to, nullptr, nullptr, nullptr};
    const int sourceStride[4] = {kWidth * bytes, 0, 0, 0};
    const int targetStride[4] = {width * bytes, 0, 0, 0};
    sws_scale(context, sources, sourceStride, 0, kHeight, targets, targetStride);
  });
  sws_freeContext(context);
}
void SwscaleGray(benchmark::State& state) { Swscale(state, AV_PIX_FMT_GRAY8, 1); }
VNCORE_PEER(SwscaleGray, "Resample/swscale/bits:8");
void SwscaleRgb(benchmark::State& state) { Swscale(state, AV_PIX_FMT_RGB24, 3); }
VNCORE_PEER(SwscaleRgb, "Resample/swscale/bits:24");
#endif

#ifdef VNCORE_HAVE_LEPTONICA
// It keeps the width: what leans out of the picture is cut off.
void LeptonicaShear(benchmark::State& state) {
  PIX* const picture = pixCreate(kWidth, kHeight, 32);
  pixSetAllArbitrary(picture, 0x40608000);
  PIX* result = nullptr;
  constexpr float kRadians = 20.0f * 3.14159265f / 180;
  Measure(
      state, 100, [&] { pixDestroy(&result); },
      [&] { result = pixHShearCorner(nullptr, picture, kRadians, L_BRING_IN_WHITE); });
  pixDestroy(&result);
  PIX* owned = picture;
  pixDestroy(&owned);
}
BENCHMARK(LeptonicaShear)
    ->Name("Shear20/leptonica/bits:32")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace vn::bench
