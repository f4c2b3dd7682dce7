// The clock of the benchmarks.
#ifndef VNCORE_BENCH_THREAD_CLOCK_H
#define VNCORE_BENCH_THREAD_CLOCK_H

#include <benchmark/benchmark.h>
#include <time.h>

namespace vn::bench {

// Of this thread alone, so that other processes disturb less.
inline double ThreadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Adds the counter MP/s: megapixels a second, `pixels` of them in each of the iterations, which
// took `seconds` together.
inline void ReportRate(benchmark::State& state, double pixels, double seconds) {
  state.counters["MP/s"] = pixels * static_cast<double>(state.iterations()) / seconds / 1e6;
}

}  // namespace vn::bench

#endif
