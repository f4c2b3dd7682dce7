// What every benchmark reports beside its time: pixels a second, and its throughput as a part of
// memcpy's, measured right after it in the same run.
#ifndef VNCORE_BENCH_AGAINST_MEMCPY_H
#define VNCORE_BENCH_AGAINST_MEMCPY_H

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "bench/thread_clock.h"

namespace vn::bench {

// Seconds of one call of `work`, over at least a tenth of a second.
template <class Work>
double SecondsOf(const Work& work) {
  work();  // pages and caches as a repeated run finds them
  const double start = ThreadSeconds();
  double end;
  int64_t calls = 0;
  do {
    work();
    ++calls;
    end = ThreadSeconds();
  } while (end - start < 0.1);
  return (end - start) / static_cast<double>(calls);
}

// Runs `work` under `state` and adds the counters
//   MP/s     megapixels a second, `pixels` of them in a call,
//   %memcpy  the time that `reference` takes in percent of the time of `work`.
template <class Work, class Reference>
void Compare(benchmark::State& state, double pixels, const Work& work, const Reference& reference) {
  const double start = ThreadSeconds();
  for (auto _ : state)
    work();
  const double seconds = (ThreadSeconds() - start) / static_cast<double>(state.iterations());
  ReportRate(state, pixels, seconds * static_cast<double>(state.iterations()));
  state.counters["%memcpy"] = 100 * SecondsOf(reference) / seconds;
}

// The usual reference: one memcpy that touches `touched` bytes. A copy of n bytes touches 2 n.
class TouchingCopy {
 public:
  explicit TouchingCopy(size_t touched) : from_(touched / 2, 1), to_(touched / 2, 2) {}

  void operator()() const {
    std::memcpy(to_.data(), from_.data(), from_.size());
    benchmark::DoNotOptimize(to_.data());
    benchmark::ClobberMemory();
  }

 private:
  std::vector<uint8_t> from_;
  mutable std::vector<uint8_t> to_;
};

// Against that one, for work that reads `read` bytes and writes `written`.
template <class Work>
void CompareTouched(benchmark::State& state, double pixels, size_t read, size_t written,
                    const Work& work) {
  Compare(state, pixels, work, TouchingCopy(read + written));
}

}  // namespace vn::bench

#endif
