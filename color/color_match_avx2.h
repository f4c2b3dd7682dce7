// The vector forms of the nearest-colour searches; color_match.cpp and color_search.cpp call them.
#ifndef VNCORE_COLOR_COLOR_MATCH_AVX2_H
#define VNCORE_COLOR_COLOR_MATCH_AVX2_H

#include <cstdint>

namespace vn {

// Entries of a table have four bytes: blue, green, red, and one that does not count. Single colours
// are words of the same bytes, blue lowest. Distances are sums of squares, below 2^18. Up to 256
// entries, and nothing behind them is read.

// The least of distance << 8 | position, which names the first of the nearest entries, and the
// least of distance << 8 | 255 - position, which names the last.
struct NearestKeys {
  uint32_t first, last;
};
using NearestVectors = NearestKeys(const uint8_t* entries, uint32_t count, uint32_t wanted);
NearestVectors NearestKeysAvx2;

// Writes the distance of each entry to the nearest point of the cube between two colours, for a
// `count` that is rounded up to eights; returns the least distance to a farthest point.
using CubeVectors = uint32_t(const uint8_t* entries, uint32_t count, uint32_t low, uint32_t high,
                             uint32_t* nearest);
CubeVectors MeasureCubeAvx2;

}  // namespace vn

#endif
