// Run-length encoded DIBs, decoded.
#ifndef VNCORE_PLATFORM_HEADLESS_DIB_RUNS_H
#define VNCORE_PLATFORM_HEADLESS_DIB_RUNS_H

#include <vector>

#include "platform/headless/drawing/dib_format.h"
#include "platform/headless/surfaces/clip.h"

namespace headless {

struct DecodedRuns {
  std::vector<uint8_t> bits;  // rows as in an uncompressed DIB; pixels that no code reaches are 0
  ClipRects reached;  // the pixels that codes reach, one rectangle a run, lines from the top
};

// Decodes as far as `bytes` bytes of codes and the picture go. Codes are pairs: a count and what to
// repeat, or 0 and a command: 0 ends the line, 1 the picture, 2 moves right and up by the next two
// bytes, any other copies as many pixels, padded to 2 bytes.
DecodedRuns DecodeRuns(const DibFormat& format, const uint8_t* codes, size_t bytes);

}  // namespace headless

#endif
