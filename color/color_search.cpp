// Thinned-out tables per cube of the colour space.
#include "color/color_search.h"

#include <algorithm>
#include <bit>

#include "kernel/vector.h"

namespace vn {
namespace {

// A cube by its lowest and highest levels, both included.
struct Levels {
  Rgb low, high;
};

// Squared distances from each entry to the nearest point of a cube go into `nearest`; the least
// distance to a farthest point is returned.
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

}  // namespace

ColorSearch::ColorSearch(const RGBQUAD* colors, uint32_t count, size_t expected)
    : colors_(colors),
      count_(count),
      nearest_(NearestForm()),
      measure_(VNCORE_VECTOR_FORM(nullptr, MeasureCubeAvx2)) {
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
  const uint32_t reach = measure_ ? measure_(reinterpret_cast<const uint8_t*>(colors_), count_,
                                             WordOf(low), WordOf(high), nearest)
                                  : MeasureCube(colors_, count_, {low, high}, nearest);
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
      return list[NearestEntry(list, cube.count, c, nearest_)].rgbReserved;
    }
  }
  return ColorMatch(colors_, count_, static_cast<uint32_t>(c.red), static_cast<uint32_t>(c.green),
                    static_cast<uint32_t>(c.blue));
}

}  // namespace vn
