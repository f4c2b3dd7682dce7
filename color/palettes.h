// Palettes inside the library: the active palette and the fixed tables.
#ifndef VNCORE_COLOR_PALETTES_H
#define VNCORE_COLOR_PALETTES_H

#include "kernel/vncore.h"

namespace vn {

// The palette in force: PaintPalette under FLAG_FIXED_PALETTE, else Palette, and 0 if that one is 0.
inline HPALETTE ActivePalette(const BitmapHandle& bitmap) {
  return bitmap.Flags & FLAG_FIXED_PALETTE ? bitmap.PaintPalette : bitmap.Palette;
}

}  // namespace vn

#endif
