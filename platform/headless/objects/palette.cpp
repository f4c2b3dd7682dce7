// Palette objects: entries in, entries out, the nearest one.
#include "platform/headless/objects/palette.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "platform/headless/objects/static_colors.h"

namespace headless {

int Palette::Describe(int bytes, void* result) const {
  const auto count = static_cast<WORD>(entries.size());
  if (!result) return sizeof count;
  if (bytes <= 0) return 0;
  const int given = std::min<int>(bytes, sizeof count);
  std::memcpy(result, &count, static_cast<size_t>(given));
  return given;
}

HPALETTE DefaultPalette() {
  static const HGDIOBJ handle = AddStockObject(std::make_unique<Palette>(
      std::vector<PALETTEENTRY>(kStaticColors, kStaticColors + kStaticColorCount)));
  return static_cast<HPALETTE>(handle);
}

}  // namespace headless

using namespace headless;

// A palette may have no entries at all, and more than a system palette holds.
HPALETTE CreatePalette(const LOGPALETTE* palette) {
  return Enter<HPALETTE>(nullptr, [&]() -> HPALETTE {
    if (!palette) return nullptr;
    const PALETTEENTRY* first = palette->palPalEntry;
    return AddNew<HPALETTE>(std::make_unique<Palette>(
        std::vector<PALETTEENTRY>(first, first + palette->palNumEntries)));
  });
}

// A count of 0 asks for the number of entries.
UINT GetPaletteEntries(HPALETTE palette, UINT first, UINT count, LPPALETTEENTRY entries) {
  return Enter<UINT>(0, [&]() -> UINT {
    const auto* found = Find<Palette>(palette);
    if (!found) return 0;
    const auto size = static_cast<UINT>(found->entries.size());
    if (count == 0) return size;
    if (first >= size) return 0;
    const UINT given = std::min(count, size - first);
    if (entries) std::copy_n(found->entries.begin() + first, given, entries);
    return given;
  });
}

UINT SetPaletteEntries(HPALETTE palette, UINT first, UINT count, const PALETTEENTRY* entries) {
  return Enter<UINT>(0, [&]() -> UINT {
    auto* found = Find<Palette>(palette);
    if (!found || palette == DefaultPalette()) return 0;
    const auto size = static_cast<UINT>(found->entries.size());
    if (first >= size || !entries) return 0;
    const UINT taken = std::min(count, size - first);
    std::copy_n(entries, taken, found->entries.begin() + first);
    found->mapping.clear();
    return taken;
  });
}

BOOL ResizePalette(HPALETTE palette, UINT count) {
  return Enter<BOOL>(FALSE, [&]() -> BOOL {
    auto* found = Find<Palette>(palette);
    if (!found || palette == DefaultPalette() || count > 0xFFFF) return FALSE;
    found->entries.resize(count, PALETTEENTRY{});
    found->mapping.clear();
    return TRUE;
  });
}

// The first of the nearest entries; 0 where there is none, or no palette.
UINT GetNearestPaletteIndex(HPALETTE palette, COLORREF color) {
  return Enter<UINT>(0, [&]() -> UINT {
    const auto* found = Find<Palette>(palette);
    if (!found) return 0;
    UINT best = 0;
    int32_t bestDistance = INT32_MAX;
    for (UINT i = 0; i < found->entries.size() && bestDistance > 0; ++i) {
      const PALETTEENTRY& entry = found->entries[i];
      const int32_t r = entry.peRed - GetRValue(color), g = entry.peGreen - GetGValue(color),
                    b = entry.peBlue - GetBValue(color);
      const int32_t distance = r * r + g * g + b * b;
      if (distance < bestDistance) {
        bestDistance = distance;
        best = i;
      }
    }
    return best;
  });
}
