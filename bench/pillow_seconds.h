// Pillow on the picture of the colour benchmarks.
#ifndef VNCORE_BENCH_PILLOW_SECONDS_H
#define VNCORE_BENCH_PILLOW_SECONDS_H

#include <string>

namespace vn::bench {

// Processor seconds of what pillow_quantize.py does under `options`; 0 when it failed.
double PillowSeconds(const std::string& options);

}  // namespace vn::bench

#endif
