// Pictures made of samples, as files hold them, and what they show.
#ifndef VNCORE_TESTS_TOOL_SAMPLED_H
#define VNCORE_TESTS_TOOL_SAMPLED_H

#include <cmath>

#include "tests/tool/samples.h"

namespace vn::test {

// Lab is with a* and b* signed, or with an offset as ICC profiles have it.
enum class Meaning { kGray, kWhiteIsZero, kPalette, kRgb, kInks, kYcc, kLab, kIccLab };
enum class Alpha { kNone, kPlain, kMultiplied };

inline int32_t To8(uint32_t sample, int depth) {
  return static_cast<int32_t>(std::lround(sample * 255.0 / ((1 << depth) - 1)));
}

// A picture of random samples of 1 to 16 bits.
struct Sampled {
  Sampled(Meaning what, int bits, Alpha transparency, int32_t columns, int32_t lines,
          Random& random);

  int Colors() const { return meaning < Meaning::kRgb ? 1 : meaning == Meaning::kInks ? 4 : 3; }
  int Count() const { return Colors() + (alpha != Alpha::kNone); }
  uint16_t At(int32_t x, int32_t y, int sample) const {
    return samples[(int64_t{y} * width + x) * Count() + sample];
  }
  // What pixel (x, y) shows over `background`, every sample being rounded to 8 bits first.
  Rgb ColorAt(int32_t x, int32_t y, Rgb background) const;
  // The depth of the bitmap that it must become over white.
  int32_t BitmapBits() const {
    return meaning >= Meaning::kRgb ? 24 : depth == 2 ? 4 : std::min(depth, 8);
  }
  // Whole bytes for each row of a part of the picture, `count` samples of each pixel from `first`
  // on, zeros beyond the edges. Samples of 16 bits begin with the high byte.
  std::vector<uint8_t> Rows(int32_t left, int32_t top, int32_t columns, int32_t lines, int first,
                            int count) const;

  Meaning meaning;
  int depth;
  Alpha alpha;
  int32_t width, height;
  std::vector<uint16_t> samples;
  std::vector<Rgb> palette;           // need not be full
  std::vector<uint8_t> transparency;  // of the palette's first entries
  std::vector<uint16_t> key;          // the samples of a pixel that is not there
};

}  // namespace vn::test

#endif
