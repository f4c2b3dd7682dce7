// ColorMatch for many pixels of one table: the same index, found faster.
#ifndef VNCORE_COLOR_COLOR_SEARCH_H
#define VNCORE_COLOR_COLOR_SEARCH_H

#include <array>
#include <bit>

#include "color/color_match.h"
#include "kernel/pixel_format.h"

namespace vn {

// Lives on the stack of a call: it holds a cache of colours already answered. Tables have at most
// 256 entries.
class ColorSearch {
 public:
  // `expected`: roughly how many searches will come; it sizes the part of the cache in use.
  ColorSearch(const RGBQUAD* colors, uint32_t count, size_t expected)
      : colors_(colors), count_(count) {
    const unsigned bits = std::clamp<unsigned>(std::bit_width(expected), kLeastBits, kMostBits);
    shift_ = 32 - bits;
    // An empty slot holds a colour that belongs to another slot, so that no key needs a mark.
    std::fill_n(slots_.begin(), size_t{1} << bits, 0u);
    slots_[SlotOf(0)] = kForeign << 8;
  }

  uint32_t Find(Rgb c) {
    const uint32_t key = static_cast<uint32_t>(c.red << 16 | c.green << 8 | c.blue);
    uint32_t& slot = slots_[SlotOf(key)];
    if (slot >> 8 != key) slot = key << 8 | Search(c);
    return slot & 0xFF;
  }

 private:
  static constexpr unsigned kLeastBits = 4, kMostBits = 12;
  static constexpr uint32_t kForeign = 0x800000;

  uint32_t SlotOf(uint32_t key) const { return key * 0x9E3779B1u >> shift_; }
  uint32_t Search(Rgb c) const {
    return ColorMatch(colors_, count_, static_cast<uint32_t>(c.red), static_cast<uint32_t>(c.green),
                      static_cast<uint32_t>(c.blue));
  }

  const RGBQUAD* colors_;
  uint32_t count_;
  unsigned shift_;
  std::array<uint32_t, 1u << kMostBits> slots_;  // colour << 8 | index
};

}  // namespace vn

#endif
