// Pillow's quantisers followed by its Floyd-Steinberg, timed by pillow_quantize.py on the picture
// of the colour benchmarks.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/photograph.h"
#include "bench/pillow_seconds.h"
#include "bench/script_seconds.h"

namespace vn::bench {
namespace {

// The picture as a file, for as long as this lives.
class PictureFile {
 public:
  PictureFile() {
    const char* folder = std::getenv("TMPDIR");
    path_ = std::string(folder ? folder : P_tmpdir) + "/vncore-bench-XXXXXX";
    const int file = mkstemp(path_.data());
    if (file < 0) return;
    close(file);
    written_ = ThePhotograph().WritePpm(path_);
  }
  PictureFile(const PictureFile&) = delete;
  PictureFile& operator=(const PictureFile&) = delete;
  ~PictureFile() { unlink(path_.c_str()); }

  bool Written() const { return written_; }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  bool written_ = false;
};

}  // namespace

double PillowSeconds(const std::string& options) {
  const PictureFile file;
  if (!file.Written()) return 0;
  return SecondsOfScript(
      std::string(VNCORE_BENCH_PYTHON " " VNCORE_BENCH_PILLOW_SCRIPT " --seconds ") + options +
      " '" + file.Path() + "'");
}

namespace {

void Pillow(benchmark::State& state, const char* method) {
  for (auto _ : state) {
    const double seconds = PillowSeconds(std::string("--method ") + method);
    if (seconds <= 0) {
      state.SkipWithError("Pillow gave no time");
      return;
    }
    state.SetIterationTime(seconds);
    state.counters["MP/s"] = ThePhotograph().Pixels() / seconds / 1e6;
  }
}
BENCHMARK_CAPTURE(Pillow, octree, "fastoctree")
    ->Name("Optimized256/floyd-steinberg/Pillow-octree")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pillow, median, "mediancut")
    ->Name("Optimized256/floyd-steinberg/Pillow-median-cut")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vn::bench
