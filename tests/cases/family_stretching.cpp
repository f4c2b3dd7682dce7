// The platform: whole DIBs stretched and mirrored onto sections, across all their edges. At 24 and 32
// bits, where no colour is looked up.
#include "tests/cases/surfaces.h"

namespace vn::cases {

namespace {

void Run(Case& test) {
  const int32_t bits = test.OneOf({24, 32});
  const int32_t targetWidth = test.Pick(1, 30), targetHeight = test.Pick(1, 20);
  const Section target(test, targetWidth, targetHeight, bits);
  const int32_t sourceWidth = test.Pick(1, 20), sourceHeight = test.Pick(1, 20);
  const bool topFirst = test.random.Chance(2);
  Dib source(test, sourceWidth, sourceHeight, bits, topFirst, false);
  int32_t width = test.Pick(1, 40), height = test.Pick(1, 40);
  int32_t x = test.Pick(-10, 20), y = test.Pick(-10, 15);
  if (test.random.Chance(3)) x += width - 1, width = -width;
  if (test.random.Chance(3)) y += height - 1, height = -height;
  test.Note("%dx%d at %d,%d", width, height, x, y);
  test.Fold("StretchDIBits",
            StretchDIBits(target.context(), x, y, width, height, 0, 0, sourceWidth, sourceHeight,
                          source.bits(), source.info(), DIB_RGB_COLORS, SRCCOPY));
  target.Fold(test);
}

const Registration registration({"stretching", 2000, 0xF941809C9B36F0E4u, Run});

}  // namespace

}  // namespace vn::cases
