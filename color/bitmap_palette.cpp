// The palettes of bitmaps: their creation and replacement, the two forms of DibColors, the gray
// test.
#include <algorithm>
#include <array>
#include <cstring>

#include "color/fixed_palettes.h"
#include "color/palettes.h"
#include "kernel/platform_objects.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

using ColorTable = std::array<RGBQUAD, kMaxColors>;

// Reads the whole active palette; entries that it does not have stay zero.
uint32_t ReadActivePalette(const BitmapHandle& bitmap, ColorTable& colors) {
  colors = {};
  return Vn_GetPaletteEntries(ActivePalette(bitmap), 0, static_cast<uint32_t>(bitmap.ColorCount),
                              colors.data());
}

// Flags bytes count: a fixed colour with a flag set is not the fixed palette.
bool IsFixedPalette(const BitmapHandle& bitmap, const ColorTable& colors) {
  const RGBQUAD* fixed = Vn_IntGetFixedPalette(static_cast<uint32_t>(bitmap.BitsPerPixel));
  return fixed && std::memcmp(fixed, colors.data(), sizeof(RGBQUAD) << bitmap.BitsPerPixel) == 0;
}

bool IsLevel(const RGBQUAD& c, uint8_t level) {
  return c.rgbRed == level && c.rgbGreen == level && c.rgbBlue == level;
}

void GiveNewBitmapPalette(BitmapHandle& bitmap, bool gray, const RGBQUAD* colors) {
  if (gray) {
    bitmap.Palette = Vn_CreateGrayPalette(8);
    bitmap.Flags |= FLAG_GRAY_PALETTE;
    Vn_CreatePaletteIndexes(&bitmap);
  } else if (colors) {
    bitmap.Palette = Vn_CreatePalette(colors, static_cast<uint32_t>(bitmap.ColorCount));
    Vn_CreatePaletteIndexes(&bitmap);
  } else {
    Vn_CreateBitmapFixedPalette(&bitmap);
    bitmap.Flags |= FLAG_FIXED_PALETTE;
  }
}

}  // namespace
}  // namespace vn

VnStatus VN_CALL Vn_CreateBitmap(BitmapHandle* bitmap, int32_t request, uint32_t width,
                                 uint32_t height, int32_t bitsPerPixel, uint32_t colorOrder,
                                 const RGBQUAD* colors, uint32_t viewOrigin) {
  if (!bitmap) return ERR_INVALID_PARAMETER;
  const bool gray = bitsPerPixel == 0;
  VnStatus status = Vn_InitBitmap(bitmap, width, height, gray ? 8 : bitsPerPixel);
  if (status != OK) return status;
  status = Vn_AllocateBitmap(bitmap, request);
  if (status != OK) return status;
  if (bitmap->BitsPerPixel >= 16) {
    bitmap->ColorOrder = colorOrder;
  } else {
    vn::GiveNewBitmapPalette(*bitmap, gray, colors);
  }
  bitmap->ViewOrigin = viewOrigin;
  return OK;
}

VnStatus VN_CALL Vn_GetBitmapColors(BitmapHandle* bitmap, uint32_t first, uint32_t count,
                                    RGBQUAD* colors) {
  if (!bitmap) return ERR_NO_BITMAP;
  if (count == 0) return ERR_INVALID_PARAMETER;
  const uint32_t read = Vn_GetPaletteEntries(vn::ActivePalette(*bitmap), first, count, colors);
  return read < count ? ERR_INVALID_PARAMETER : OK;
}

VnStatus VN_CALL Vn_PutBitmapColors(BitmapHandle* bitmap, int32_t first, int32_t count,
                                    const RGBQUAD* colors) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  if (first < 0 || int64_t{first} + count > bitmap->ColorCount || bitmap->BitsPerPixel > 8) {
    return ERR_INVALID_PARAMETER;
  }
  vn::ColorTable table;
  vn::ReadActivePalette(*bitmap, table);
  if (count > 0) std::copy_n(colors, count, table.begin() + first);

  DeleteObject(vn::ActivePalette(*bitmap));
  vn::OwnedObject<HPALETTE> palette(
      Vn_CreatePalette(table.data(), static_cast<uint32_t>(bitmap->ColorCount)));
  if (vn::IsFixedPalette(*bitmap, table)) {
    bitmap->PaintPalette = palette.Release();
    bitmap->Palette = nullptr;
    bitmap->Flags = (bitmap->Flags | FLAG_FIXED_PALETTE) & ~uint32_t{FLAG_CUSTOM_PALETTE};
  } else if (Vn_IsGrayScaleBitmap(bitmap) == 1) {
    // Asked of the old handle, which is dead unless the platform refused to delete it (a stock
    // palette): so even a gray table lands below, as a custom palette. The order is wanted.
    bitmap->Flags |= FLAG_GRAY_PALETTE;
  } else {
    bitmap->Palette = palette.Release();
    bitmap->PaintPalette = nullptr;
    bitmap->Flags = (bitmap->Flags | FLAG_CUSTOM_PALETTE) & ~uint32_t{FLAG_FIXED_PALETTE};
  }
  return Vn_CreatePaletteIndexes(bitmap);
}

VnStatus VN_CALL Vn_CreatePaletteIndexes(BitmapHandle* bitmap) {
  if (!bitmap) return ERR_NO_BITMAP;
  uint16_t indexes[256];
  vn::WriteIdentityIndexes(indexes);
  std::memcpy(bitmap->DibColors, indexes, sizeof indexes);
  bitmap->Flags |= FLAG_PALETTE_INDEXES;
  return OK;
}

int32_t VN_CALL Vn_CreatePaletteColors(BitmapHandle* bitmap) {
  if (!bitmap || bitmap->BitsPerPixel > 8) return 0;
  std::memset(bitmap->DibColors, 0, sizeof bitmap->DibColors);
  const HPALETTE palette = vn::ActivePalette(*bitmap);
  if (!palette) return 0;
  Vn_GetPaletteEntries(palette, 0, static_cast<uint32_t>(bitmap->ColorCount), bitmap->DibColors);
  bitmap->Flags &= ~uint32_t{FLAG_PALETTE_INDEXES};
  return 1;
}

int32_t VN_CALL Vn_CreateBitmapFixedPalette(BitmapHandle* bitmap) {
  uint32_t bits;
  switch (bitmap->ColorCount) {
    case 2:
      bits = 1;
      break;
    case 16:
      bits = 4;
      break;
    case 256:
      bits = 8;
      break;
    default:
      return 0;
  }
  Vn_GetFixedPalette(bitmap->DibColors, bits);
  bitmap->PaintPalette = Vn_CreateFixedPalette(bits);
  Vn_CreatePaletteIndexes(bitmap);
  return 1;
}

int32_t VN_CALL Vn_CreateBitmapTruePalette(BitmapHandle* bitmap) {
  if (bitmap->Palette) DeleteObject(bitmap->Palette);
  bitmap->Palette = Vn_CreatePalette(bitmap->DibColors, static_cast<uint32_t>(bitmap->ColorCount));
  Vn_CreatePaletteIndexes(bitmap);
  return 1;
}

int32_t VN_CALL Vn_IsGrayScaleBitmap(BitmapHandle* bitmap) {
  if (!bitmap || bitmap->BitsPerPixel > 8 || bitmap->ColorCount <= 0) return 0;
  vn::ColorTable table;
  const auto count = static_cast<uint32_t>(bitmap->ColorCount);
  if (vn::ReadActivePalette(*bitmap, table) < count) return 0;
  const auto end = table.begin() + count;
  if (!std::all_of(table.begin(), end, [](auto& c) { return vn::IsLevel(c, c.rgbRed); })) return 0;

  const bool rising = table[0].rgbRed == 0;
  const int32_t span = rising ? 255 : -255;
  const auto step = static_cast<uint8_t>(count > 1 ? span / static_cast<int32_t>(count - 1) : 0);
  uint8_t level = rising ? 0 : 255;
  for (auto entry = table.begin(); entry != end; ++entry) {
    if (!vn::IsLevel(*entry, level)) return 3;
    level = static_cast<uint8_t>(level + step);
  }
  return rising ? 1 : 2;
}
