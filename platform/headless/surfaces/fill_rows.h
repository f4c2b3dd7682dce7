// Runs of pixels that all meet the same pattern value.
#ifndef VNCORE_PLATFORM_HEADLESS_FILL_ROWS_H
#define VNCORE_PLATFORM_HEADLESS_FILL_ROWS_H

#include <cstdint>

namespace headless {

// What an operation without a source makes of a pixel: (pixel & keep) ^ flip.
struct Ink {
  uint32_t keep, flip;
};

// Applies an ink to pixels x to x + count - 1 of a row. Neighbours in shared bytes are kept.
using FillRow = void (*)(uint8_t* row, int32_t x, int32_t count, const Ink& ink);

// The loop for a depth.
FillRow FillRowFor(uint32_t bits);

}  // namespace headless

#endif
