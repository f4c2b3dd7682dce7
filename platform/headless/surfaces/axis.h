// How the pixels of one axis of a drawing call's target come from those of its source.
#ifndef VNCORE_PLATFORM_HEADLESS_AXIS_H
#define VNCORE_PLATFORM_HEADLESS_AXIS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace headless {

// Source pixels that meet in one target pixel, both ends included.
struct Span {
  int32_t first, last;
};

struct Axis {
  int32_t first = 0, count = 0;  // the stretch of the target that is drawn
  int32_t source = 0;            // one to one: source pixel of `first`
  std::vector<Span> table;       // otherwise: source pixels per target pixel

  bool straight() const { return table.empty(); }
  Span SourcesOf(int32_t at) const {
    if (!straight()) return table[static_cast<size_t>(at - first)];
    return {source + (at - first), source + (at - first)};
  }
};

// Lays `sourceSize` pixels from `source` on over `targetSize` pixels from `target` on. A negative
// size runs to lower coordinates, from its start on; one negative size mirrors. What falls outside
// of the source (0 to sourceLimit - 1) or of the target is left out.
//
// Both axes of a picture are stretched alone. Going up, a target pixel takes the source pixel under
// its centre; going down, a source pixel goes to the target pixel under its centre, and those that
// meet are combined with AND, as the default stretching mode of a context has it. A centre on an
// edge counts with the lower pixel.
Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit, int32_t source,
              int32_t sourceSize, int32_t sourceLimit);

// The same where there is no source.
Axis MakeAxis(int32_t target, int32_t targetSize, int32_t targetLimit);

}  // namespace headless

#endif
