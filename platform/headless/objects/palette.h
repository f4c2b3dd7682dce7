// Logical palettes.
#ifndef VNCORE_PLATFORM_HEADLESS_PALETTE_H
#define VNCORE_PLATFORM_HEADLESS_PALETTE_H

#include <vector>

#include "platform/headless/objects/objects.h"

namespace headless {

class SystemPalette;

class Palette : public Object {
 public:
  explicit Palette(std::vector<PALETTEENTRY> colors)
      : Object(OBJ_PAL), entries(std::move(colors)) {}
  int Describe(int bytes, void* result) const override;

  std::vector<PALETTEENTRY> entries;
  // System palette index of each entry, and the system palette it is in. No mapping: not realised,
  // or changed since.
  std::vector<uint8_t> mapping;
  uint64_t realizedOn = 0;
};

// The palette that every context begins with: the 20 colours that a palette device reserves.
HPALETTE DefaultPalette();

}  // namespace headless

#endif
