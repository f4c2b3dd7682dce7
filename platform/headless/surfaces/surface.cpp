// Colour matching in the table of a surface.
#include "platform/headless/surfaces/surface.h"

namespace headless {

uint32_t NearestEntry(const ColorTable& table, uint32_t rgb) {
  const auto red = static_cast<int32_t>(rgb >> 16 & 0xFF);
  const auto green = static_cast<int32_t>(rgb >> 8 & 0xFF);
  const auto blue = static_cast<int32_t>(rgb & 0xFF);
  uint32_t best = 0;
  int32_t bestDistance = INT32_MAX;
  for (uint32_t i = 0; i < table.count && bestDistance > 0; ++i) {
    const RGBQUAD& entry = table.entries[i];
    const int32_t r = red - entry.rgbRed, g = green - entry.rgbGreen, b = blue - entry.rgbBlue;
    const int32_t distance = r * r + g * g + b * b;
    if (distance < bestDistance) {
      bestDistance = distance;
      best = i;
    }
  }
  return best;
}

}  // namespace headless
