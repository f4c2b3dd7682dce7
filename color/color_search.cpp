// Thinned-out tables per cube of the colour space.
#include "color/color_search.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vn {
namespace {

// A cube by its lowest and highest levels, both included.
struct Levels {
  Rgb low, high;
};

// Squared distances from each entry to the nearest point of a cube go into `nearest`; the least
// distance to a farthest point is returned.
#if defined(__SSE2__)

uint32_t MeasureCube(const RGBQUAD* colors, uint32_t count, const Levels& cube, uint32_t* nearest) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i noFlags = _mm_set1_epi32(0x00FFFFFF);
  const auto spread = [](Rgb c) {
    const auto b = static_cast<short>(c.blue), g = static_cast<short>(c.green),
               r = static_cast<short>(c.red);
    return _mm_setr_epi16(b, g, r, 0, b, g, r, 0);
  };
  // Two squared lengths, of the three differences in each half of the register.
  const auto add = [](__m128i low, __m128i high) {
    const __m128 a = _mm_castsi128_ps(_mm_madd_epi16(low, low));
    const __m128 c = _mm_castsi128_ps(_mm_madd_epi16(high, high));
    return _mm_add_epi32(_mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(2, 0, 2, 0))),
                         _mm_castps_si128(_mm_shuffle_ps(a, c, _MM_SHUFFLE(3, 1, 3, 1))));
  };
  const __m128i low = spread(cube.low), high = spread(cube.high);
  uint32_t least = 0xFFFFFFFF;
  for (uint32_t i = 0; i < count; i += 4) {
    __m128i entries;
    if (count - i >= 4) {
      entries = _mm_loadu_si128(reinterpret_cast<const __m128i*>(colors + i));
    } else {
      RGBQUAD last[4] = {};
      std::copy_n(colors + i, count - i, last);
      entries = _mm_loadu_si128(reinterpret_cast<const __m128i*>(last));
    }
    entries = _mm_and_si128(entries, noFlags);
    __m128i inner[2], outer[2];
    const __m128i halves[2] = {_mm_unpacklo_epi8(entries, zero), _mm_unpackhi_epi8(entries, zero)};
    for (int half = 0; half < 2; ++half) {
      const __m128i above = _mm_sub_epi16(halves[half], low);
      const __m128i below = _mm_sub_epi16(high, halves[half]);
      inner[half] = _mm_min_epi16(_mm_min_epi16(above, below), zero);
      outer[half] = _mm_max_epi16(above, below);
    }
    alignas(16) uint32_t farthest[4], nearestFour[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(farthest), add(outer[0], outer[1]));
    _mm_store_si128(reinterpret_cast<__m128i*>(nearestFour), add(inner[0], inner[1]));
    for (uint32_t k = 0; k < std::min(count - i, 4u); ++k) {
      nearest[i + k] = nearestFour[k];
      least = std::min(least, farthest[k]);
    }
  }
  return least;
}

#else

uint32_t MeasureCube(const RGBQUAD* colors, uint32_t count, const Levels& cube, uint32_t* nearest) {
  uint32_t least = 0xFFFFFFFF;
  for (uint32_t i = 0; i < count; ++i) {
    const Rgb c = ColorOf(colors[i]);
    int32_t inner = 0, outer = 0;
    const auto axis = [&](int32_t value, int32_t low, int32_t high) {
      const int32_t outside = std::min({value - low, high - value, 0});
      const int32_t across = std::max(value - low, high - value);
      inner += outside * outside;
      outer += across * across;
    };
    axis(c.red, cube.low.red, cube.high.red);
    axis(c.green, cube.low.green, cube.high.green);
    axis(c.blue, cube.low.blue, cube.high.blue);
    nearest[i] = static_cast<uint32_t>(inner);
    least = std::min(least, static_cast<uint32_t>(outer));
  }
  return least;
}

#endif

}  // namespace

ColorSearch::ColorSearch(const RGBQUAD* colors, uint32_t count, size_t expected)
    : colors_(colors), count_(count) {
  const auto bits =
      std::clamp(static_cast<unsigned>(std::bit_width(expected)), kLeastSlotBits, kMostSlotBits);
  slotShift_ = 32 - bits;
  // An empty slot holds a colour that belongs to another slot: 0 everywhere but in the slot of 0.
  std::fill_n(slots_.begin(), size_t{1} << bits, 0u);
  constexpr uint32_t kForeign = 0x800000;
  slots_[SlotOf(0)] = kForeign << 8;
  // Thinning out pays for larger tables, and not for a handful of pixels.
  thinning_ = count > 16 && expected >= 64;
  if (thinning_) cubes_.fill({0, 0});
}

bool ColorSearch::MakeList(Rgb c, Cube* cube) {
  if (kListEntries - listEnd_ < count_) return false;
  constexpr int32_t kSide = (1 << kCubeShift) - 1;
  const Rgb low{c.red & ~kSide, c.green & ~kSide, c.blue & ~kSide};
  const Rgb high{low.red + kSide, low.green + kSide, low.blue + kSide};
  uint32_t nearest[kMaxColors];
  const uint32_t reach = MeasureCube(colors_, count_, {low, high}, nearest);
  // In the order of the table, and equal distances stay in, so that ties end as in the whole table.
  RGBQUAD* const list = lists_.data() + listEnd_;
  uint32_t kept = 0;
  for (uint32_t i = 0; i < count_; ++i) {
    list[kept] = colors_[i];
    list[kept].rgbReserved = static_cast<BYTE>(i);
    kept += nearest[i] <= reach;
  }
  *cube = {static_cast<uint16_t>(listEnd_), static_cast<uint16_t>(kept)};
  listEnd_ += kept;
  return true;
}

uint32_t ColorSearch::Search(Rgb c) {
  const bool atAnEnd = (c.red | c.green | c.blue) == 0 || (c.red & c.green & c.blue) == 255;
  if (thinning_ && !atAnEnd) {
    const auto side = [](int32_t level) { return static_cast<uint32_t>(level >> kCubeShift); };
    Cube& cube = cubes_[(side(c.red) * kCubesASide + side(c.green)) * kCubesASide + side(c.blue)];
    if (cube.count || MakeList(c, &cube)) {
      const RGBQUAD* list = lists_.data() + cube.first;
      return list[NearestEntry(list, cube.count, c)].rgbReserved;
    }
  }
  return ColorMatch(colors_, count_, static_cast<uint32_t>(c.red), static_cast<uint32_t>(c.green),
                    static_cast<uint32_t>(c.blue));
}

}  // namespace vn
