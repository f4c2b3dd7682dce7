// The colours of a palette device, and how logical palettes come to lie in them.
#ifndef VNCORE_PLATFORM_HEADLESS_SYSTEM_PALETTE_H
#define VNCORE_PLATFORM_HEADLESS_SYSTEM_PALETTE_H

#include <bitset>
#include <memory>

#include "platform/headless/objects/palette.h"
#include "platform/headless/surfaces/surface.h"

namespace headless {

// 256 colours, of which the reserved ones lie half at each end and never change. The rest are slots
// for the palettes that are realised.
class SystemPalette {
 public:
  explicit SystemPalette(int32_t reserved);

  // Maps the entries of a palette to system indexes. A foreground palette gets all slots anew, a
  // background one those that are left. The number of entries whose index or colour changed.
  UINT Realize(Palette& palette, bool background);

  // Whether the palette's mapping leads into this system palette.
  bool Holds(const Palette& palette) const {
    return palette.realizedOn == id_ && palette.mapping.size() == palette.entries.size();
  }

  const std::shared_ptr<ColorTable>& colors() const { return colors_; }

 private:
  uint8_t Place(const PALETTEENTRY& entry);
  int FindShared(uint32_t rgb) const;
  int FindFree() const;

  const uint64_t id_;
  const uint32_t low_, high_;  // slots lie from low_ up to high_, that one excluded
  std::shared_ptr<ColorTable> colors_;
  std::bitset<256> used_;       // by a realised palette, or reserved
  std::bitset<256> exclusive_;  // by an entry that shares its colour with no other
};

}  // namespace headless

#endif
