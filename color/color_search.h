// ColorMatch for the many pixels of a row: the same index, found faster.
//
// Colours repeat, so the last answers are kept in a small cache. Colours that are new lie close to
// earlier ones, so the colour space is divided into cubes, and for a cube that is asked for the
// table is thinned out once: an entry whose nearest point of the cube is farther than the farthest
// point of some other entry is never the answer there. (Heckbert, "Color Image Quantization for
// Frame Buffer Display", 1982, thins out his lists in the same way.)
#ifndef VNCORE_COLOR_COLOR_SEARCH_H
#define VNCORE_COLOR_COLOR_SEARCH_H

#include <array>

#include "color/color_match.h"
#include "color/palettes.h"
#include "kernel/pixel_format.h"

namespace vn {

// Lives on the stack of a call, about 36 KB. Tables have at most 256 entries and at least one.
class ColorSearch {
 public:
  // `expected`: roughly how many searches will come; it sizes the part of the cache in use.
  ColorSearch(const RGBQUAD* colors, uint32_t count, size_t expected);

  uint32_t Find(Rgb c) {
    const auto key = static_cast<uint32_t>(c.red << 16 | c.green << 8 | c.blue);
    uint32_t& slot = slots_[SlotOf(key)];
    if (slot >> 8 != key) slot = key << 8 | Search(c);
    return slot & 0xFF;
  }

 private:
  static constexpr unsigned kLeastSlotBits = 4, kMostSlotBits = 12;
  static constexpr int kCubeShift = 5;  // cubes of 32 levels a side
  static constexpr uint32_t kCubesASide = 256 >> kCubeShift;
  static constexpr uint32_t kListEntries = 4096;

  // A stretch of lists_. Count 0: not made yet.
  struct Cube {
    uint16_t first, count;
  };

  uint32_t SlotOf(uint32_t key) const { return key * 0x9E3779B1u >> slotShift_; }
  uint32_t Search(Rgb c);
  // Makes the list of the cube that holds `c`; false when there is no more room for lists.
  bool MakeList(Rgb c, Cube* cube);

  const RGBQUAD* colors_;
  uint32_t count_;
  NearestVectors* nearest_;  // or null
  CubeVectors* measure_;     // or null
  unsigned slotShift_;
  uint32_t listEnd_ = 0;
  bool thinning_;
  std::array<uint32_t, 1u << kMostSlotBits> slots_;  // colour << 8 | index
  std::array<Cube, kCubesASide * kCubesASide * kCubesASide> cubes_;
  std::array<RGBQUAD, kListEntries> lists_;  // the fourth byte is the entry's index in the table
};

// The same for a table of two entries: the plane between them decides, and only a colour that lies
// on it needs more.
class PairSearch {
 public:
  explicit PairSearch(const RGBQUAD* colors) : colors_(colors) {
    const Rgb a = ColorOf(colors[0]), b = ColorOf(colors[1]);
    red_ = 2 * (a.red - b.red);
    green_ = 2 * (a.green - b.green);
    blue_ = 2 * (a.blue - b.blue);
    offset_ = SquareOf(b) - SquareOf(a);
  }

  uint32_t Find(Rgb c) const {
    // The distance to entry 1 less the distance to entry 0.
    const int32_t side = red_ * c.red + green_ * c.green + blue_ * c.blue + offset_;
    if (side == 0) return ColorMatchOf(c);
    return side < 0;
  }

 private:
  static int32_t SquareOf(Rgb c) { return c.red * c.red + c.green * c.green + c.blue * c.blue; }
  uint32_t ColorMatchOf(Rgb c) const {
    return ColorMatch(colors_, 2, static_cast<uint32_t>(c.red), static_cast<uint32_t>(c.green),
                      static_cast<uint32_t>(c.blue));
  }

  const RGBQUAD* colors_;
  int32_t red_, green_, blue_, offset_;
};

}  // namespace vn

#endif
