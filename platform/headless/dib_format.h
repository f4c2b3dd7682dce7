// Reading of a BITMAPINFO.
#ifndef VNCORE_PLATFORM_HEADLESS_DIB_FORMAT_H
#define VNCORE_PLATFORM_HEADLESS_DIB_FORMAT_H

#include "platform/headless/context.h"
#include "platform/headless/surface.h"

namespace headless {

struct DibFormat {
  int32_t width = 0, height = 0;  // both positive
  bool topDown = false;
  PixelLayout layout;
  uint64_t stride = 0;             // bytes
  uint32_t colorCount = 0;         // entries of the table, up to 8 bits
  const uint8_t* table = nullptr;  // RGBQUAD or WORD entries, need not be aligned

  uint64_t bytes() const { return stride * static_cast<uint64_t>(height); }
};

// False for what is no uncompressed DIB of a depth that exists.
bool ReadDibFormat(const BITMAPINFO* info, DibFormat* format);

// The colours that a DIB's table names: they stand in it, or it holds indexes into the context's
// palette, which count round at the palette's end. False when there is no such palette.
bool ReadDibColors(const DibFormat& format, UINT usage, const Context* context, ColorTable* colors);

// The DIB's rows as a surface without colours.
Surface DibSurface(const DibFormat& format, uint8_t* bits);

}  // namespace headless

#endif
