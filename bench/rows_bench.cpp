// Row calls through the row cache, against memcpy of the same rows.
#include "bench/against_memcpy.h"
#include "bench/pictures.h"

namespace vn::bench {
namespace {

constexpr uint32_t kRowBytes = 4096;
constexpr uint32_t kRows = 4096;

enum Kind { kMapped, kGlobal, kFile };
constexpr int32_t kRequests[] = {STORAGE_AUTO, STORAGE_MEMORY, STORAGE_DISK};

// 4 KB rows, from the first to the last.
template <class Call>
void SequentialRows(benchmark::State& state, const Call& call, bool reading) {
  const auto kind = static_cast<Kind>(state.range(0));
  const Win32sScope version(kind != kMapped);
  Picture picture(kRowBytes, kRows, 8, kRequests[kind]);
  const BitmapLock lock(picture);
  std::vector<uint8_t> row(kRowBytes);
  std::vector<uint8_t> plain(size_t{kRowBytes} * kRows, 1);
  const auto rows = [&] {
    for (uint32_t y = 0; y < kRows; ++y)
      call(picture, row.data(), y, kRowBytes);
    benchmark::ClobberMemory();
  };
  const auto reference = [&] {
    for (uint32_t y = 0; y < kRows; ++y) {
      uint8_t* const at = plain.data() + size_t{y} * kRowBytes;
      std::memcpy(reading ? row.data() : at, reading ? at : row.data(), kRowBytes);
      benchmark::ClobberMemory();
    }
  };
  Compare(state, double{kRowBytes} * kRows, rows, reference);
}

void GetRows(benchmark::State& state) { SequentialRows(state, Vn_GetBitmapRow, true); }
void PutRows(benchmark::State& state) { SequentialRows(state, Vn_PutBitmapRow, false); }

BENCHMARK(GetRows)->ArgName("storage")->DenseRange(kMapped, kFile);
BENCHMARK(PutRows)->ArgName("storage")->DenseRange(kMapped, kFile);

// A picture made, written once and freed: what fresh pages cost beside the copy itself.
void MakeFillAndFree(benchmark::State& state) {
  constexpr uint32_t kWidth = 4096, kHeight = 3072;
  std::vector<uint8_t> row(kWidth * 3, 1);
  CompareTouched(state, double{kWidth} * kHeight, 0, size_t{kWidth} * 3 * kHeight, [&] {
    BitmapHandle bitmap;
    Vn_InitBitmap(&bitmap, kWidth, kHeight, 24);
    if (Vn_AllocateBitmap(&bitmap, STORAGE_AUTO) != OK) std::abort();
    for (uint32_t y = 0; y < kHeight; ++y)
      Vn_PutBitmapRow(&bitmap, row.data(), y, kWidth * 3);
    Vn_FreeBitmap(&bitmap);
  });
}
BENCHMARK(MakeFillAndFree)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
