// What every benchmark reports beside its time: pixels a second, and its throughput as a part of
// memcpy's, measured right after it in the same run.
#ifndef VNCORE_BENCH_AGAINST_MEMCPY_H
#define VNCORE_BENCH_AGAINST_MEMCPY_H

#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace vn::bench {

// Of this thread alone, so that other processes disturb less.
inline double ThreadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

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
  state.counters["MP/s"] = pixels / seconds / 1e6;
  state.counters["%memcpy"] = 100 * SecondsOf(reference) / seconds;
}

// The usual reference: one memcpy that touches as many bytes as the work, which reads `read` bytes
// and writes `written`. A copy of n bytes touches 2 n.
template <class Work>
void CompareTouched(benchmark::State& state, double pixels, size_t read, size_t written,
                    const Work& work) {
  const size_t bytes = (read + written) / 2;
  std::vector<uint8_t> from(bytes, 1), to(bytes, 2);
  Compare(state, pixels, work, [&] {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  });
}

}  // namespace vn::bench

#endif
