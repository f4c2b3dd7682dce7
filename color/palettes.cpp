// Palette objects: colour tables into and out of the platform's logical palettes.
#include "color/palettes.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "color/fixed_palettes.h"
#include "kernel/platform_objects.h"
#include "kernel/scratch_buffer.h"

namespace vn {
namespace {

constexpr WORD kPaletteVersion = 0x300;

// A LOGPALETTE with room for a full table.
struct LogicalPalette {
  WORD version = kPaletteVersion;
  WORD count = 0;
  PALETTEENTRY entries[kMaxColors];

  HPALETTE Create() const { return CreatePalette(reinterpret_cast<const LOGPALETTE*>(this)); }
};
static_assert(offsetof(LogicalPalette, entries) == offsetof(LOGPALETTE, palPalEntry));

PALETTEENTRY EntryOf(const RGBQUAD& c) { return {c.rgbRed, c.rgbGreen, c.rgbBlue, c.rgbReserved}; }
RGBQUAD ColorOfEntry(const PALETTEENTRY& e) { return {e.peBlue, e.peGreen, e.peRed, e.peFlags}; }

bool SameColor(const RGBQUAD& a, const RGBQUAD& b) {
  return a.rgbRed == b.rgbRed && a.rgbGreen == b.rgbGreen && a.rgbBlue == b.rgbBlue;
}

}  // namespace
}  // namespace vn

using vn::kMaxColors;

HPALETTE VN_CALL Vn_CreatePalette(const RGBQUAD* colors, uint32_t count) {
  if (count > kMaxColors) return nullptr;
  vn::LogicalPalette palette;
  palette.count = static_cast<WORD>(count);
  std::transform(colors, colors + count, palette.entries, vn::EntryOf);
  return palette.Create();
}

uint32_t VN_CALL Vn_GetPaletteSize(HPALETTE palette) {
  WORD size = 0;
  if (palette) GetObjectA(palette, sizeof size, &size);
  return size;
}

uint32_t VN_CALL Vn_GetPaletteEntries(HPALETTE palette, uint32_t first, uint32_t count,
                                      RGBQUAD* colors) {
  std::array<PALETTEENTRY, kMaxColors> entries;
  count = std::min(count, kMaxColors);
  // Asked for none, a platform may answer with the size of the palette.
  const uint32_t read =
      std::min<uint32_t>(count, GetPaletteEntries(palette, first, count, entries.data()));
  std::transform(entries.begin(), entries.begin() + read, colors, vn::ColorOfEntry);
  return read;
}

uint32_t VN_CALL Vn_SetPaletteEntries(HPALETTE palette, uint32_t first, uint32_t count,
                                      const RGBQUAD* colors) {
  std::array<PALETTEENTRY, kMaxColors> entries;
  count = std::min(count, kMaxColors);
  std::transform(colors, colors + count, entries.begin(), vn::EntryOf);
  return SetPaletteEntries(palette, first, count, entries.data());
}

HPALETTE VN_CALL Vn_CreateSystemPalette(void) {
  vn::LogicalPalette palette;
  {
    const vn::ScreenDC screen;
    if (!(GetDeviceCaps(screen.get(), RASTERCAPS) & RC_PALETTE)) return nullptr;
    const int size = GetDeviceCaps(screen.get(), SIZEPALETTE);
    const auto count = static_cast<UINT>(std::clamp(size, 0, static_cast<int>(kMaxColors)));
    palette.count =
        static_cast<WORD>(GetSystemPaletteEntries(screen.get(), 0, count, palette.entries));
  }
  return palette.Create();
}

HPALETTE VN_CALL Vn_CreateGrayPalette(uint32_t bits) {
  if (bits == 0) bits = 8;
  if (bits > 8) return nullptr;
  const uint32_t count = 1u << bits;
  const vn::ScratchBuffer<RGBQUAD> ramp(count);
  if (!ramp) return nullptr;
  // The step leaves white unreached below 8 bits; the ramp that Vn_IsGrayScaleBitmap knows differs.
  const uint32_t step = 256 / count;
  for (uint32_t k = 0; k < count; ++k) {
    const auto level = static_cast<BYTE>(k * step);
    ramp[k] = {level, level, level, 0};
  }
  return Vn_CreatePalette(ramp.data(), count);
}

HPALETTE VN_CALL Vn_DupPalette(HPALETTE palette) {
  // Any number of entries is copied, so the table is sized by the palette and not by kMaxColors.
  const uint32_t count = Vn_GetPaletteSize(palette);
  if (count == 0) return nullptr;
  const vn::ScratchBuffer<uint8_t> block(offsetof(LOGPALETTE, palPalEntry) +
                                         count * sizeof(PALETTEENTRY));
  if (!block) return nullptr;
  auto* copy = reinterpret_cast<LOGPALETTE*>(block.data());
  copy->palVersion = vn::kPaletteVersion;
  copy->palNumEntries =
      static_cast<WORD>(GetPaletteEntries(palette, 0, count, &copy->palPalEntry[0]));
  return copy->palNumEntries ? CreatePalette(copy) : nullptr;
}

HPALETTE VN_CALL Vn_CreateFixedPalette(uint32_t bits) {
  if (bits <= 1) return Vn_CreatePalette(vn::FixedPalette2.data(), 2);
  if (bits <= 4) return Vn_CreatePalette(vn::FixedPalette16.data(), 16);
  if (bits <= 8) return Vn_CreatePalette(vn::FixedPalette256.data(), 256);
  return nullptr;
}

int32_t VN_CALL Vn_CompareHandleToPalette(HPALETTE palette, const RGBQUAD* colors, uint32_t count) {
  std::array<RGBQUAD, kMaxColors> entries;
  const uint32_t read = Vn_GetPaletteEntries(palette, 0, count, entries.data());
  return std::equal(entries.begin(), entries.begin() + read, colors, vn::SameColor);
}
