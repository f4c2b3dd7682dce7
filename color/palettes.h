// Palettes inside the library: the active palette of a bitmap.
#ifndef VNCORE_COLOR_PALETTES_H
#define VNCORE_COLOR_PALETTES_H

#include <vncore/vncore.h>

namespace vn {

// Most entries of a colour table. Work tables hold as many; larger counts are no contract of ours.
inline constexpr uint32_t kMaxColors = 256;

// The palette in force: PaintPalette under FLAG_FIXED_PALETTE, else Palette, and 0 if that one is
// 0.
inline HPALETTE ActivePalette(const BitmapHandle& bitmap) {
  return bitmap.Flags & FLAG_FIXED_PALETTE ? bitmap.PaintPalette : bitmap.Palette;
}

}  // namespace vn

#endif
