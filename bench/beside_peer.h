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

// The value below which a part of the values lies.
inline double PartOf(std::vector<double> values, double part) {
  const auto at =
      values.begin() + static_cast<ptrdiff_t>(static_cast<double>(values.size()) * part);
  std::nth_element(values.begin(), at, values.end());
  return *at;
}
inline double MedianOf(const std::vector<double>& values) { return PartOf(values, 0.5); }

// Reports our time beside a peer's:
//   MP/s       megapixels a second of ours, `pixels` of them in a call,
//   peer_MP/s  the same of the peer,
//   ours/peer  our time as a part of the peer's: below 1 we are faster,
//   moved      bytes that ours have to read and to write in a call, where told.
inline void ReportBeside(benchmark::State& state, double pixels, double ours, double peer,
                         size_t moved) {
  state.counters["MP/s"] = pixels / ours / 1e6;
  state.counters["peer_MP/s"] = pixels / peer / 1e6;
  state.counters["ours/peer"] = ours / peer;
  if (moved) state.counters["moved"] = static_cast<double>(moved);
}

// Times `ours` and `peer` in turns and reports the medians, and with them
//   low, high  between which the middle half of the turns lay, each with its own ours/peer.
// The benchmark's own time is that of ours.
template <class Ours, class Peer>
void BesidePeer(benchmark::State& state, double pixels, const Ours& ours, const Peer& peer,
                size_t moved = 0) {
  ours();
  peer();
  std::vector<double> our, their, ratios;
  for (auto _ : state) {
    our.push_back(SecondsOfCall(ours));
    their.push_back(SecondsOfCall(peer));
    ratios.push_back(our.back() / their.back());
    state.SetIterationTime(our.back());
  }
  if (our.empty()) return;
  ReportBeside(state, pixels, MedianOf(our), MedianOf(their), moved);
  state.counters["low"] = PartOf(ratios, 0.25);
  state.counters["high"] = PartOf(ratios, 0.75);
}

// The same beside a peer in a process of its own, which took `theirs` in its fastest run; 0 when it
// failed. Our fastest run counts as well.
template <class Ours>
void BesideProcess(benchmark::State& state, double pixels, const Ours& ours, double theirs,
                   size_t moved = 0) {
  if (theirs <= 0) {
    state.SkipWithError("the peer gave no time");
    return;
  }
  ours();
  std::vector<double> our;
  for (auto _ : state) {
    our.push_back(SecondsOfCall(ours));
    state.SetIterationTime(our.back());
  }
  if (our.empty()) return;
  ReportBeside(state, pixels, PartOf(our, 0), theirs, moved);
}

}  // namespace vn::bench

#endif
