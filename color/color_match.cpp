// The exact nearest-colour search, and maps of whole palettes.
#include "color/color_match.h"

#include <algorithm>
#include <cstring>

#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

// The hue family of a colour: how green and blue stand to the other channels.
uint32_t ShapeOf(Rgb c) {
  const int32_t low = std::min(c.red, c.blue);
  const int32_t high = std::max(c.red, c.blue);
  return static_cast<uint32_t>((c.blue > c.red) << 2 | (c.green < low) << 1 | (c.green > high));
}

bool IsColor(const RGBQUAD& c, uint8_t level) {
  return c.rgbRed == level && c.rgbGreen == level && c.rgbBlue == level;
}

uint32_t DistanceOf(Rgb a, Rgb b) {
  const int32_t red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
  return static_cast<uint32_t>(red * red + green * green + blue * blue);
}

// The nearest entries of a block of the table: the first and the last of those at one distance.
struct Nearest {
  uint32_t distance, first, last;
};

// A distance is below 2^18, so with the position below it makes a key of 26 bits, and the least key
// is the first of the nearest entries. Positions counted from the block's end give the last.
constexpr uint32_t kBlock = 256;
constexpr uint32_t FirstKey(uint32_t distance, uint32_t i) { return distance << 8 | i; }
constexpr uint32_t LastKey(uint32_t distance, uint32_t i) { return distance << 8 | (255 - i); }

Nearest NearestInBlock(const RGBQUAD* colors, uint32_t count, Rgb wanted, NearestVectors* vectors) {
  NearestKeys keys = {kNone, kNone};
  if (vectors) {
    keys = vectors(reinterpret_cast<const uint8_t*>(colors), count, WordOf(wanted));
  } else {
    for (uint32_t i = 0; i < count; ++i) {
      const uint32_t distance = DistanceOf(ColorOf(colors[i]), wanted);
      keys.first = std::min(keys.first, FirstKey(distance, i));
      keys.last = std::min(keys.last, LastKey(distance, i));
    }
  }
  return {keys.first >> 8, keys.first & 255, 255 - (keys.last & 255)};
}

}  // namespace

NearestVectors* NearestForm() { return VNCORE_VECTOR_FORM(nullptr, NearestKeysAvx2); }

uint32_t NearestEntry(const RGBQUAD* colors, uint32_t count, Rgb wanted, NearestVectors* vectors) {
  uint32_t bestDistance = kNone;
  uint32_t best = kNone;
  for (uint32_t block = 0; block < count; block += kBlock) {
    const Nearest nearest =
        NearestInBlock(colors + block, std::min(kBlock, count - block), wanted, vectors);
    if (nearest.distance > bestDistance) continue;
    uint32_t i = block + nearest.first;
    if (nearest.distance < bestDistance) {
      bestDistance = nearest.distance;
      best = i++;
    }
    // An exact hit ends the search; of equally near ones the last of the hue family wins.
    if (bestDistance == 0) break;
    for (; i <= block + nearest.last; ++i) {
      const Rgb c = ColorOf(colors[i]);
      if (DistanceOf(c, wanted) == bestDistance && ShapeOf(c) == ShapeOf(wanted)) best = i;
    }
  }
  return best;
}

uint32_t ColorMatch(const RGBQUAD* colors, uint32_t count, uint32_t red, uint32_t green,
                    uint32_t blue) {
  const RGBQUAD& last = colors[count ? count - 1 : 0];
  if ((red | green | blue) == 0) {
    if (IsColor(colors[0], 0)) return 0;
    if (IsColor(last, 0)) return count - 1;
  } else if ((red & green & blue) == 255) {
    if (count && IsColor(last, 255)) return count - 1;
    if (IsColor(colors[0], 255)) return 0;
  }
  return NearestEntry(
      colors, count,
      {static_cast<int32_t>(red), static_cast<int32_t>(green), static_cast<int32_t>(blue)},
      NearestForm());
}

int32_t BuildColorMap(const RGBQUAD* srcColors, uint32_t srcCount, const RGBQUAD* dstColors,
                      uint32_t dstCount, uint8_t* map) {
  if (!srcColors && !dstColors) return 1;
  if (!srcColors) srcCount = 256;
  const bool same = srcColors && dstColors && dstCount >= srcCount &&
                    std::memcmp(srcColors, dstColors, srcCount * sizeof(RGBQUAD)) == 0;
  bool identity = true;
  for (uint32_t i = 0; i < srcCount; ++i) {
    const auto level = static_cast<int32_t>(i);
    const Rgb c = srcColors ? ColorOf(srcColors[i]) : Rgb{level, level, level};
    uint32_t to = i;
    if (!dstColors) {
      to = GrayOf(c);
    } else if (!same) {
      to = ColorMatch(dstColors, dstCount, static_cast<uint32_t>(c.red),
                      static_cast<uint32_t>(c.green), static_cast<uint32_t>(c.blue));
    }
    map[i] = static_cast<uint8_t>(to);
    identity = identity && to == i;
  }
  return identity;
}

}  // namespace vn
