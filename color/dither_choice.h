// The ways of choosing an answer for a colour, one type per way. Choose gives a place in
// DitherRecord.Answers; for the fixed palettes that is the index itself.
#ifndef VNCORE_COLOR_DITHER_CHOICE_H
#define VNCORE_COLOR_DITHER_CHOICE_H

#include <algorithm>

#include "color/color_match.h"
#include "color/dither_state.h"
#include "kernel/pixel_format.h"

namespace vn {

inline constexpr int32_t ClampChannel(int32_t value) { return std::clamp(value, 0, 255); }

inline constexpr Rgb AddClamped(Rgb c, int32_t offset) {
  return {ClampChannel(c.red + offset), ClampChannel(c.green + offset),
          ClampChannel(c.blue + offset)};
}

class FixedChoice2 {
 public:
  explicit FixedChoice2(const DitherRecord&) {}
  static uint32_t Choose(Rgb c) { return GrayOf(c) >> 7; }
  // Against a threshold of the matrix.
  static uint32_t ChooseOrdered(Rgb c, int32_t threshold) {
    return static_cast<uint32_t>(threshold) < GrayOf(c);
  }
};

// Only black and the seven full colours are chosen, at 9 to 15 by their bits; the dark colours and
// the grays of this palette are not.
class FixedChoice16 {
 public:
  explicit FixedChoice16(const DitherRecord&) {}
  static uint32_t Choose(Rgb c) { return FullColor(c.red > 127, c.green > 127, c.blue > 127); }
  static uint32_t ChooseOrdered(Rgb c, int32_t threshold) {
    return FullColor(threshold < c.red, threshold < c.green, threshold < c.blue);
  }

 private:
  static uint32_t FullColor(bool red, bool green, bool blue) {
    const auto bits = static_cast<uint32_t>(red | green << 1 | blue << 2);
    return bits ? bits + 8 : 0;
  }
};

class FixedChoice256 {
 public:
  explicit FixedChoice256(const DitherRecord&) {}
  static uint32_t Choose(Rgb c) {
    return static_cast<uint32_t>((c.red & 0xE0) | c.green >> 5 << 2 | c.blue >> 6);
  }
  static uint32_t ChooseOrdered(Rgb c, int32_t threshold) {
    return Choose(AddClamped(c, (threshold >> 3) - 16));
  }
};

// By match table. A cell that has no answer yet is searched for by its low corner, once.
class CellChoice {
 public:
  explicit CellChoice(const DitherRecord& run)
      : run_(run),
        cells_(run.MatchCells),
        shift_(run.TargetBits == 1   ? 0
               : run.TargetBits == 4 ? 2
                                     : 3) {}

  uint32_t Choose(Rgb c) const {
    uint32_t& cell = cells_[CellOf(c)];
    if (cell == 0) [[unlikely]]
      cell = Search(c);
    // A caller's table is not checked, and its values stay within the answers here.
    return (cell - 1) & 0xFF;
  }
  uint32_t ChooseOrdered(Rgb c, int32_t threshold) const {
    return Choose(AddClamped(c, (threshold >> shift_) - (128 >> shift_)));
  }

 private:
  [[gnu::noinline]] uint32_t Search(Rgb c) const {
    return 1 + ColorMatch(run_.UsableColors, run_.UsableCount, static_cast<uint32_t>(c.red & 0xF8),
                          static_cast<uint32_t>(c.green & 0xF8),
                          static_cast<uint32_t>(c.blue & 0xF8));
  }

  const DitherRecord& run_;
  uint32_t* cells_;
  int32_t shift_;
};

// Calls `use` with the type of the run's choice, to choose its loop.
template <class Use>
DitherLineProc WithChoice(const DitherRecord& run, Use&& use) {
  switch (run.PaletteKind) {
    case PALETTE_FIXED_2:
      return use(static_cast<FixedChoice2*>(nullptr));
    case PALETTE_FIXED_16:
      return use(static_cast<FixedChoice16*>(nullptr));
    case PALETTE_FIXED_256:
      return use(static_cast<FixedChoice256*>(nullptr));
    default:
      return use(static_cast<CellChoice*>(nullptr));
  }
}

}  // namespace vn

#endif
