// Our work beside a peer's: both run in turns in one process, on one thread, so that whatever else
// the machine does disturbs both alike. Warm memory: each has run once before the clock starts.
//
//   void Mirror8(benchmark::State& state) {
//     ... pictures for both, and a look that the results are what they should be ...
//     BesidePeer(state, pixels, [&] { ours(); }, [&] { theirs(); });
//   }
//   BENCHMARK(Mirror8)->Name("Mirror/8/libyuv")->UseManualTime();
#ifndef VNCORE_BENCH_BESIDE_PEER_H
#define VNCORE_BENCH_BESIDE_PEER_H

#include <algorithm>
#include <vector>

#include "bench/thread_clock.h"

namespace vn::bench {

// Processor seconds of one call.
template <class Work>
double SecondsOfCall(const Work& work) {
  const double start = ThreadSeconds();
  work();
  return ThreadSeconds() - start;
}

inline double MedianOf(std::vector<double> seconds) {
  const auto middle = seconds.begin() + static_cast<ptrdiff_t>(seconds.size() / 2);
  std::nth_element(seconds.begin(), middle, seconds.end());
  return *middle;
}

// Times `ours` and `peer` in turns and reports the medians:
//   MP/s       megapixels a second of ours, `pixels` of them in a call,
//   peer_MP/s  the same of the peer,
//   ours/peer  our time as a part of the peer's: below 1 we are faster.
// The benchmark's own time is that of ours.
template <class Ours, class Peer>
void BesidePeer(benchmark::State& state, double pixels, const Ours& ours, const Peer& peer) {
  ours();
  peer();
  std::vector<double> our, their;
  for (auto _ : state) {
    our.push_back(SecondsOfCall(ours));
    their.push_back(SecondsOfCall(peer));
    state.SetIterationTime(our.back());
  }
  if (our.empty()) return;
  state.counters["MP/s"] = pixels / MedianOf(our) / 1e6;
  state.counters["peer_MP/s"] = pixels / MedianOf(their) / 1e6;
  state.counters["ours/peer"] = MedianOf(our) / MedianOf(their);
}

}  // namespace vn::bench

#endif
