// Rectangles by chance.
#ifndef VNCORE_BENCH_RANDOM_RECTS_H
#define VNCORE_BENCH_RANDOM_RECTS_H

#include <vector>

#include <vncore/vncore.h>
#include "tests/support/random.h"

namespace vn::bench {

// Rectangles of up to `most` pixels a side on a plane of 16384 by 16384, the same every time; they
// may reach beyond its right and lower edge.
inline std::vector<RECT> RandomRects(int32_t count, int32_t most) {
  test::Random random(7);
  std::vector<RECT> rects(static_cast<size_t>(count));
  for (RECT& rect : rects) {
    rect.left = random.Between(0, 16383);
    rect.top = random.Between(0, 16383);
    rect.right = rect.left + random.Between(1, most);
    rect.bottom = rect.top + random.Between(1, most);
  }
  return rects;
}

}  // namespace vn::bench

#endif
