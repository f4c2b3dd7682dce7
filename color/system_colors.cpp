// Reserved colours of a palette display.
#include "color/system_colors.h"

#include <algorithm>

#include "kernel/platform_objects.h"

namespace vn {
namespace {

// Copies `count` entries of the system palette from `first` on. What the system does not give
// stays.
void CopySystemColors(HDC screen, uint32_t first, uint32_t count, RGBQUAD* colors) {
  PALETTEENTRY entries[256];
  if (count == 0) return;
  const uint32_t got = GetSystemPaletteEntries(screen, first, count, entries);
  for (uint32_t i = 0; i < std::min(got, count); ++i)
    colors[i] = {entries[i].peBlue, entries[i].peGreen, entries[i].peRed, 0};
}

}  // namespace

uint32_t ReserveSystemColors(RGBQUAD* colors, uint32_t count) {
  const ScreenDC screen;
  if (!screen.get() || !(GetDeviceCaps(screen.get(), RASTERCAPS) & RC_PALETTE)) return 0;
  const auto reserved =
      static_cast<uint32_t>(std::max(GetDeviceCaps(screen.get(), NUMRESERVED), 0));
  const auto size = static_cast<uint32_t>(std::max(GetDeviceCaps(screen.get(), SIZEPALETTE), 0));
  const uint32_t kept = std::min({reserved, count, size});
  const uint32_t low = kept / 2, high = kept - low;
  CopySystemColors(screen.get(), 0, low, colors);
  CopySystemColors(screen.get(), size - high, high, colors + count - high);
  return kept;
}

}  // namespace vn
