// Fixed, optimised and caller's palettes for a change of colour resolution.
#include "color/result_palette.h"

#include <algorithm>

#include "color/optimize_palette.h"
#include "color/system_colors.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

// Flags bytes of a caller's table: bit 1 without bit 0 leaves an entry to the palette builder.
constexpr BYTE kKept = 1, kOpen = 2;

bool IsFree(const RGBQUAD& entry) { return (entry.rgbReserved & (kKept | kOpen)) == kOpen; }

void TakeFixed(BitmapHandle* target) {
  Vn_GetFixedPalette(target->DibColors, static_cast<uint32_t>(target->BitsPerPixel));
  target->PaintPalette =
      Vn_CreatePalette(target->DibColors, static_cast<uint32_t>(target->ColorCount));
  target->Flags |= FLAG_FIXED_PALETTE;
}

VnStatus TakeUser(BitmapHandle* target, const PaletteRequest& request, ResultPalette* result) {
  if (!request.colors) return ERR_INVALID_PARAMETER;
  std::copy_n(request.colors, request.colorCount, target->DibColors);
  target->Palette = Vn_CreatePalette(target->DibColors, request.colorCount);
  result->colors = request.colors;
  result->colorCount = request.colorCount;
  if (request.flags & RES_USER_MATCH_TABLE) {
    result->userTable = CurrentThreadSettings().UserMatchTable;
  }
  return OK;
}

// Entries of an optimised palette before the builder fills the free ones.
struct Slots {
  RGBQUAD entries[256];
  uint32_t freeCount = 0;
  bool packed = false;  // the free entries come first, without a gap

  Slots(uint32_t tableCount, const PaletteRequest& request) {
    std::fill_n(entries, tableCount, kFillerColor);
    if (request.flags & RES_SYSTEM_COLORS) ReserveSystemColors(entries, request.colorCount);
    uint32_t freeEnd = 0;
    for (uint32_t i = 0; i < request.colorCount; ++i) {
      if (request.colors && !IsFree(request.colors[i])) entries[i] = request.colors[i];
      if (!IsFree(entries[i])) continue;
      ++freeCount;
      freeEnd = i + 1;
    }
    packed = freeCount > 0 && freeEnd == freeCount;
  }
};

VnStatus TakeOptimized(BitmapHandle* source, BitmapHandle* target, const PaletteRequest& request,
                       ResultPalette* result) {
  const auto tableCount = static_cast<uint32_t>(target->ColorCount);
  const Slots slots(tableCount, request);
  result->dither = source->BitsPerPixel > target->BitsPerPixel ||
                   static_cast<uint32_t>(source->ColorCount) > slots.freeCount || !slots.packed;
  std::copy_n(slots.entries, tableCount, target->DibColors);
  if (slots.freeCount > 0) {
    RGBQUAD built[256] = {};
    // The builder numbers its colours from the first on: its table serves only where they are the
    // palette's own numbers.
    const VnStatus status =
        OptimizePalette(source, built, slots.freeCount, slots.packed ? &result->ownTable : nullptr);
    if (status != OK) return status;
    // An entry with both bits set takes a built colour although none was made for it. The last ones
    // are then black.
    const RGBQUAD* next = built;
    for (uint32_t i = 0; i < request.colorCount; ++i) {
      if (slots.entries[i].rgbReserved & kOpen) target->DibColors[i] = *next++;
    }
  }
  target->Palette = Vn_CreatePalette(target->DibColors, tableCount);
  target->Flags |= FLAG_OPTIMIZED_PALETTE;
  return OK;
}

}  // namespace

VnStatus SettlePalette(BitmapHandle* source, BitmapHandle* target, const PaletteRequest& request,
                       ResultPalette* result) {
  const uint32_t choice = request.flags & 0x3F;
  if (target->BitsPerPixel > 8) {
    if (choice != 0 && choice != RES_ORDER_BGR) return ERR_INVALID_PARAMETER;
    target->ColorOrder = choice == RES_ORDER_BGR ? ORDER_BGR : ORDER_RGB;
    return OK;
  }
  result->colors = target->DibColors;
  result->colorCount = static_cast<uint32_t>(target->ColorCount);
  result->dither = true;
  switch (choice) {
    case RES_FIXED_PALETTE:
      TakeFixed(target);
      return OK;
    case RES_USER_PALETTE:
    case RES_USER_PALETTE | RES_USER_MATCH_TABLE:
      return TakeUser(target, request, result);
    case 0:
    case RES_OPTIMIZED_PALETTE:
    case RES_SYSTEM_COLORS:
    case RES_SYSTEM_COLORS | RES_OPTIMIZED_PALETTE:
      return TakeOptimized(source, target, request, result);
    default:
      return ERR_INVALID_PARAMETER;
  }
}

}  // namespace vn
