// Reading of a BITMAPINFO.
#ifndef VNCORE_PLATFORM_HEADLESS_DIB_FORMAT_H
#define VNCORE_PLATFORM_HEADLESS_DIB_FORMAT_H

#include "platform/headless/devices/context.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

struct DibFormat {
  int32_t width = 0, height = 0;  // both positive
  bool topDown = false;
  PixelLayout layout;
  uint64_t stride = 0;             // bytes
  uint32_t colorCount = 0;         // entries of the table, up to 8 bits
  uint32_t entryBytes = 4;         // of a colour in it: 3 behind a short header
  const uint8_t* table = nullptr;  // colours or WORD indexes, need not be aligned
  uint32_t runBytes = 0;           // of run-length codes; 0: rows

  uint64_t bytes() const { return stride * static_cast<uint64_t>(height); }
};

// False for what is no DIB of a depth that exists, behind a header of 12 bytes or of 40 and more. Run
// lengths of 4 and 8 bits pass only when they are `allowed`, with rows from the bottom up and their
// size told; the surfaces below are for rows.
bool ReadDibFormat(const BITMAPINFO* info, DibFormat* format, bool runsAllowed = false);

// The colours that a DIB's table names: they stand in it, or it holds indexes into the context's
// palette, which count round at the palette's end. False when there is no such palette.
bool ReadDibColors(const DibFormat& format, UINT usage, const Context* context, ColorTable* colors);

// The DIB's rows as a surface without colours.
Surface DibSurface(const DibFormat& format, uint8_t* bits);

}  // namespace headless

#endif
