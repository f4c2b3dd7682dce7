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

// The nearest entries of a block of the table: the first and the last of those at one distance.
struct Nearest {
  uint32_t distance, first, last;
};

// A distance is below 2^18, so with the position below it makes a key of 26 bits, and the least key
// is the first of the nearest entries. Positions counted from the block's end give the last.
constexpr uint32_t kBlock = 256;
constexpr uint32_t FirstKey(uint32_t distance, uint32_t i) { return distance << 8 | i; }
constexpr uint32_t LastKey(uint32_t distance, uint32_t i) { return distance << 8 | (255 - i); }

Nearest NearestInBlock(const RGBQUAD* colors, uint32_t count, Rgb wanted) {
  uint32_t first = kNone, last = kNone;
  uint32_t i = 0;
#if defined(__SSE2__)
  if (count >= 4) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i noFlags = _mm_set1_epi32(0x00FFFFFF);
    const auto b = static_cast<short>(wanted.blue);
    const auto g = static_cast<short>(wanted.green);
    const auto r = static_cast<short>(wanted.red);
    const __m128i color = _mm_setr_epi16(b, g, r, 0, b, g, r, 0);
    // Bits of positive normal floats are ordered as the floats are: with this in the exponent the
    // minimum of keys is one instruction of the baseline.
    constexpr int kExponent = 0x08000000;
    __m128i firsts = _mm_setr_epi32(kExponent, kExponent + 1, kExponent + 2, kExponent + 3);
    __m128i lasts =
        _mm_setr_epi32(kExponent + 255, kExponent + 254, kExponent + 253, kExponent + 252);
    const __m128i four = _mm_set1_epi32(4);
    __m128 leastFirst = _mm_castsi128_ps(_mm_set1_epi32(0x7F000000));
    __m128 leastLast = leastFirst;
    for (; i + 4 <= count; i += 4) {
      const __m128i entries =
          _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(colors + i)), noFlags);
      const __m128i low = _mm_sub_epi16(_mm_unpacklo_epi8(entries, zero), color);
      const __m128i high = _mm_sub_epi16(_mm_unpackhi_epi8(entries, zero), color);
      const __m128 a = _mm_castsi128_ps(_mm_madd_epi16(low, low));
      const __m128 c = _mm_castsi128_ps(_mm_madd_epi16(high, high));
      const __m128i distances = _mm_slli_epi32(
          _mm_add_epi32(_mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(2, 0, 2, 0))),
                        _mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(3, 1, 3, 1)))),
          8);
      leastFirst = _mm_min_ps(leastFirst, _mm_castsi128_ps(_mm_add_epi32(distances, firsts)));
      leastLast = _mm_min_ps(leastLast, _mm_castsi128_ps(_mm_add_epi32(distances, lasts)));
      firsts = _mm_add_epi32(firsts, four);
      lasts = _mm_sub_epi32(lasts, four);
    }
    const auto leastOf = [](__m128 lanes) {
      lanes = _mm_min_ps(lanes, _mm_movehl_ps(lanes, lanes));
      lanes = _mm_min_ss(lanes, _mm_shuffle_ps(lanes, lanes, 1));
      return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_castps_si128(lanes)) - kExponent);
    };
    first = leastOf(leastFirst);
    last = leastOf(leastLast);
  }
#endif
  for (; i < count; ++i) {
    const uint32_t distance = DistanceOf(ColorOf(colors[i]), wanted);
    first = std::min(first, FirstKey(distance, i));
    last = std::min(last, LastKey(distance, i));
  }
  return {first >> 8, first & 255, 255 - (last & 255)};
}

}  // namespace

uint32_t NearestEntry(const RGBQUAD* colors, uint32_t count, Rgb wanted) {
  uint32_t bestDistance = kNone;
  uint32_t best = kNone;
  for (uint32_t block = 0; block < count; block += kBlock) {
    const Nearest nearest = NearestInBlock(colors + block, std::min(kBlock, count - block), wanted);
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
      {static_cast<int32_t>(red), static_cast<int32_t>(green), static_cast<int32_t>(blue)});
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
