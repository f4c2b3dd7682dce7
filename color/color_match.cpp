// The exact nearest-colour search, and maps of whole palettes.
#include "color/color_match.h"

#include <algorithm>
#include <cstring>

#include "kernel/pixel_format.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// Walks a table in blocks: the distances of a block first, in a loop without branches, and only
// then which of the nearest entries wins.
constexpr uint32_t kBlock = 256;

#if defined(__SSE2__)

// Writes the distances of `count` entries and returns the smallest.
uint32_t BlockDistances(const RGBQUAD* colors, uint32_t count, Rgb wanted, uint32_t* distances) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i noFlags = _mm_set1_epi32(0x00FFFFFF);
  const auto b = static_cast<short>(wanted.blue);
  const auto g = static_cast<short>(wanted.green);
  const auto r = static_cast<short>(wanted.red);
  const __m128i color = _mm_setr_epi16(b, g, r, 0, b, g, r, 0);
  // Distances are below 2^18, so with this exponent their bits order as floats: a minimum in one
  // instruction of the baseline.
  const __m128i exponent = _mm_set1_epi32(0x3F800000);
  __m128 least = _mm_castsi128_ps(_mm_set1_epi32(0x7F000000));
  const auto distancesOf = [&](const void* four) {
    const __m128i entries =
        _mm_and_si128(_mm_loadu_si128(static_cast<const __m128i*>(four)), noFlags);
    const __m128i low = _mm_sub_epi16(_mm_unpacklo_epi8(entries, zero), color);
    const __m128i high = _mm_sub_epi16(_mm_unpackhi_epi8(entries, zero), color);
    const __m128 a = _mm_castsi128_ps(_mm_madd_epi16(low, low));
    const __m128 c = _mm_castsi128_ps(_mm_madd_epi16(high, high));
    return _mm_add_epi32(_mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(2, 0, 2, 0))),
                         _mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(3, 1, 3, 1))));
  };
  uint32_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i four = distancesOf(colors + i);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(distances + i), four);
    least = _mm_min_ps(least, _mm_castsi128_ps(_mm_or_si128(four, exponent)));
  }
  alignas(16) uint32_t lanes[4];
  _mm_store_ps(reinterpret_cast<float*>(lanes), least);
  uint32_t best = std::min({lanes[0], lanes[1], lanes[2], lanes[3]}) - 0x3F800000;
  for (; i < count; ++i) {
    distances[i] = DistanceOf(ColorOf(colors[i]), wanted);
    best = std::min(best, distances[i]);
  }
  return best;
}

#else

uint32_t BlockDistances(const RGBQUAD* colors, uint32_t count, Rgb wanted, uint32_t* distances) {
  uint32_t best = kNone;
  for (uint32_t i = 0; i < count; ++i) {
    distances[i] = DistanceOf(ColorOf(colors[i]), wanted);
    best = std::min(best, distances[i]);
  }
  return best;
}

#endif

}  // namespace

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
  const Rgb wanted{static_cast<int32_t>(red), static_cast<int32_t>(green),
                   static_cast<int32_t>(blue)};
  const uint32_t shape = ShapeOf(wanted);
  uint32_t distances[kBlock];
  uint32_t bestDistance = kNone;
  uint32_t best = kNone;
  for (uint32_t block = 0; block < count; block += kBlock) {
    const uint32_t size = std::min(kBlock, count - block);
    const uint32_t least = BlockDistances(colors + block, size, wanted, distances);
    if (least > bestDistance) continue;
    uint32_t i = 0;
    if (least < bestDistance) {
      while (distances[i] != least)
        ++i;
      best = block + i++;
      bestDistance = least;
    }
    // An exact hit ends the search; of equally near ones the last of the hue family wins.
    if (least == 0) break;
    for (; i < size; ++i) {
      if (distances[i] == least && ShapeOf(ColorOf(colors[block + i])) == shape) best = block + i;
    }
  }
  return best;
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
