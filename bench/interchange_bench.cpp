// Pictures to DIBs and device bitmaps and back, 12 megapixels, in turns with copies of as many bytes:
//   of_copy  our time as a part of that of one memcpy between buffers that are there,
//   of_new   the same of one memcpy into new memory in huge pages: all of ours make what they return.
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

#include "bench/against_memcpy.h"
#include "bench/beside_peer.h"
#include "bench/pictures.h"
#include "kernel/platform_objects.h"

namespace vn::bench {
namespace {

constexpr uint32_t kWidth = 4096, kHeight = 3072;

class CopyToNewMemory {
 public:
  explicit CopyToNewMemory(size_t bytes) : from_(bytes, 1) {}
  void operator()() const {
    constexpr size_t kHugePage = size_t{2} << 20;
    const size_t length = from_.size() + kHugePage;
    void* const to =
        mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (to == MAP_FAILED) std::abort();
    madvise(to, length, MADV_HUGEPAGE);
    const auto start = (reinterpret_cast<uintptr_t>(to) + kHugePage - 1) / kHugePage * kHugePage;
    std::memcpy(reinterpret_cast<void*>(start), from_.data(), from_.size());
    benchmark::ClobberMemory();
    munmap(to, length);
  }

 private:
  std::vector<uint8_t> from_;
};

// `copies` of `bytes` bytes are what `work` cannot do without.
template <class Work>
void BesideCopies(benchmark::State& state, size_t bytes, int copies, const Work& work) {
  const TouchingCopy copy(2 * bytes);
  const CopyToNewMemory copyToNew(bytes);
  work();
  copy();
  std::vector<double> ours, warm, fresh;
  for (auto _ : state) {
    ours.push_back(SecondsOfCall(work));
    warm.push_back(copies * SecondsOfCall(copy));
    fresh.push_back(copies * SecondsOfCall(copyToNew));
    state.SetIterationTime(ours.back());
  }
  if (ours.empty()) return;
  state.counters["median_ms"] = 1e3 * MedianOf(ours);
  state.counters["of_copy"] = MedianOf(ours) / MedianOf(warm);
  state.counters["of_new"] = MedianOf(ours) / MedianOf(fresh);
}

void Require(bool done) {
  if (!done) std::abort();
}

// Bits of a pixel, and the order of rows: 0 top line first, 2 bottom line first.
int32_t Bits(const benchmark::State& state) { return static_cast<int32_t>(state.range(0)); }
uint32_t Origin(const benchmark::State& state) { return static_cast<uint32_t>(state.range(1)); }

void ConvertToDib(benchmark::State& state) {
  Picture picture(kWidth, kHeight, Bits(state));
  picture->ViewOrigin = Origin(state);
  BesideCopies(state, picture->DataSize, 1, [&] {
    const HGLOBAL dib = Vn_ConvertToDIB(picture);
    Require(dib);
    GlobalFree(dib);
  });
}

void ConvertFromDib(benchmark::State& state) {
  Picture picture(kWidth, kHeight, Bits(state));
  const HGLOBAL dib = Vn_ChangeToDIB(picture);
  const auto* const info = static_cast<const BITMAPINFO*>(GlobalLock(dib));
  const auto colors = Bits(state) <= 8 ? 1u << Bits(state) : 0;
  const auto* const pixels =
      reinterpret_cast<const uint8_t*>(info) + sizeof info->bmiHeader + colors * sizeof(RGBQUAD);
  BesideCopies(state, info->bmiHeader.biSizeImage, 1, [&] {
    BitmapHandle bitmap;
    Require(Vn_ConvertFromDIB(&bitmap, info, pixels) == OK);
    Vn_FreeBitmap(&bitmap);
  });
  GlobalUnlock(dib);
  GlobalFree(dib);
}

// Moved into a DIB and out of it again.
void ChangeThereAndBack(benchmark::State& state) {
  Picture picture(kWidth, kHeight, Bits(state));
  BesideCopies(state, picture->DataSize, 2, [&] {
    picture->ViewOrigin = Origin(state);
    Require(Vn_ChangeFromDIB(picture, Vn_ChangeToDIB(picture)) == OK);
  });
}

// A picture that a screen of its depth shows in its own colours, so that pixels go there as they
// are: the fixed palette has those of 1 and 4 bits, and of 8 bits they depend on the system palette.
class ScreenPicture : public Picture {
 public:
  explicit ScreenPicture(int32_t bits) : Picture(kWidth, kHeight, ScreenOf(bits)) {
    if (bits != 8) return;
    BitmapHandle shown;
    const ScreenDC screen;
    const RECT corner = {0, 0, 1, 1};
    Require(Vn_ScreenCaptureBitmap(screen.get(), &shown, &corner) == OK);
    RGBQUAD colors[256];
    const auto count = static_cast<uint32_t>(shown.ColorCount);
    Require(Vn_GetBitmapColors(&shown, 0, count, colors) == OK);
    Require(Vn_PutBitmapColors(get(), 0, count, colors) == OK);
    get()->Flags &= ~uint32_t{FLAG_FIXED_PALETTE};
    Vn_FreeBitmap(&shown);
  }

 private:
  static int32_t ScreenOf(int32_t bits) {
    SetScreen(64, 64, bits);
    return bits;
  }
};

void ToDevice(benchmark::State& state, Picture& picture, uint32_t origin) {
  picture->ViewOrigin = origin;
  const ScreenDC screen;
  BesideCopies(state, picture->DataSize, 1, [&] {
    const HBITMAP object = Vn_ConvertToDDB(screen.get(), picture);
    Require(object);
    DeleteObject(object);
  });
}

void ToDeviceBitmap(benchmark::State& state) {
  ScreenPicture picture(Bits(state));
  ToDevice(state, picture, Origin(state));
}
// Other colours: every pixel is looked up.
void ToDeviceBitmapMapped(benchmark::State& state) {
  SetScreen(64, 64, Bits(state));
  Picture picture(kWidth, kHeight, Bits(state));
  ToDevice(state, picture, Origin(state));
}

void FromDeviceBitmap(benchmark::State& state) {
  ScreenPicture picture(Bits(state));
  const ScreenDC screen;
  const HBITMAP object = Vn_ConvertToDDB(screen.get(), picture);
  BesideCopies(state, picture->DataSize, 1, [&] {
    BitmapHandle bitmap;
    Require(Vn_ConvertFromDDB(screen.get(), &bitmap, object, nullptr) == OK);
    Vn_FreeBitmap(&bitmap);
  });
  DeleteObject(object);
}

void Kinds(benchmark::internal::Benchmark* bench, const std::vector<int64_t>& depths,
           const std::vector<int64_t>& origins) {
  bench->ArgNames({"bits", "origin"})->UseManualTime()->Unit(benchmark::kMillisecond);
  bench->ArgsProduct({depths, origins});
}
void BothOrders(benchmark::internal::Benchmark* bench) {
  Kinds(bench, {1, 4, 8, 24}, {VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST});
}
BENCHMARK(ConvertToDib)->Apply(BothOrders);
BENCHMARK(ChangeThereAndBack)->Apply(BothOrders);
BENCHMARK(ConvertFromDib)->Apply([](auto* bench) {
  Kinds(bench, {1, 4, 8, 24, 32}, {VIEW_BOTTOM_FIRST});
});
BENCHMARK(ToDeviceBitmap)->Apply(BothOrders);
BENCHMARK(ToDeviceBitmapMapped)->Apply([](auto* bench) { Kinds(bench, {8}, {VIEW_BOTTOM_FIRST}); });
BENCHMARK(FromDeviceBitmap)->Apply([](auto* bench) {
  Kinds(bench, {1, 4, 8, 24}, {VIEW_BOTTOM_FIRST});
});

}  // namespace
}  // namespace vn::bench
