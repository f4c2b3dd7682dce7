#include "compose/underlay_rows.h"

#include <algorithm>

namespace vn {

void ShadePlain(uint8_t* pixels, const uint8_t* grays, size_t width) {
  for (size_t x = 0; x < width; ++x) {
    const int shift = grays[x] - 128;
    for (uint8_t* channel = pixels + 3 * x; channel < pixels + 3 * x + 3; ++channel)
      *channel = static_cast<uint8_t>(std::clamp(*channel + shift, 0, 255));
  }
}

}  // namespace vn
