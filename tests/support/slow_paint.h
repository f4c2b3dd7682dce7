// Painting the long way: what a paint must hand to the device, worked out pixel by pixel with a
// division each, from whole pictures in memory. The gray and the vote of 1-bit pictures are left to
// the numbered cases.
#ifndef VNCORE_TESTS_SUPPORT_SLOW_PAINT_H
#define VNCORE_TESTS_SUPPORT_SLOW_PAINT_H

#include <optional>

#include "tests/support/bitmaps.h"

namespace vn::test {

struct SlowPaint {
  BitmapHandle* bitmap;
  uint32_t mode;    // display mode
  int32_t rawBits;  // of the device: BITSPIXEL times PLANES
  std::optional<RECT> source, sourceClip;
  RECT destination;
  std::optional<RECT> destinationClip;
};

// One DIB at one place of the device. No lines: nothing is painted.
struct SlowPicture {
  VnStatus status = OK;
  int32_t kind = 0;
  int32_t x = 0, y = 0;
  int32_t bits = 0;
  std::vector<std::vector<uint32_t>> lines;  // top line first, pixels as in PixelBits
  bool indexes = false;                      // the table: palette indexes, or `colors`
  Colors colors;

  int32_t Width() const { return lines.empty() ? 0 : static_cast<int32_t>(lines[0].size()); }
  int32_t Height() const { return static_cast<int32_t>(lines.size()); }
};

SlowPicture PaintSlowly(const SlowPaint& paint);

}  // namespace vn::test

#endif
