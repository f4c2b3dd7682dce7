#include "device/band_table.h"

#include <algorithm>

#include "color/fixed_palettes.h"
#include "color/palettes.h"

namespace vn {

uint32_t ColorsOf(const BitmapHandle& bitmap) {
  return std::min(static_cast<uint32_t>(bitmap.ColorCount), kMaxColors);
}

void BandTable::SetColors(const PaintJob& job, int32_t bits, bool fixedPalette, uint32_t count) {
  if (stands_) return;
  ThreadSettings& settings = CurrentThreadSettings();
  const bool printer = GetDeviceCaps(job.hDC, TECHNOLOGY) == DT_RASPRINTER;
  if (printer) settings.PrinterPaintInfo = settings.PaintInfo;
  info_ = printer ? &settings.PrinterPaintInfo : &settings.PaintInfo;
  stands_ = !printer;
  Fill(*job.bitmap, bits, fixedPalette, count);
}

void BandTable::SetRowColors(const PaintJob& job) {
  info_ = &CurrentThreadSettings().PaintInfo;
  Fill(*job.bitmap, job.bitmap->BitsPerPixel, false, ColorsOf(*job.bitmap));
}

void BandTable::SetGrays() {
  if (stands_) return;
  ThreadSettings& settings = CurrentThreadSettings();
  info_ = &settings.PaintInfo;
  stands_ = true;
  info_->header.biClrUsed = static_cast<DWORD>(GrayRamp256.size());
  if (settings.DisplayMode & MODE_DEVICE_INDEXES) {
    usage_ = DIB_PAL_COLORS;
  } else {
    std::copy(GrayRamp256.begin(), GrayRamp256.end(), info_->colors);
  }
}

void BandTable::SetInks(const PaintJob& job) {
  ThreadSettings& settings = CurrentThreadSettings();
  info_ = &settings.PaintInfo;
  info_->header.biClrUsed = 2;
  constexpr uint32_t kBoth = MODE_DEVICE_INDEXES | MODE_FIXED_PALETTE;
  if ((settings.DisplayMode & kBoth) == MODE_DEVICE_INDEXES) {
    usage_ = DIB_PAL_COLORS;
  } else {
    Vn_GetPaletteEntries(ActivePalette(*job.bitmap), 0, ColorsOf(*job.bitmap), info_->colors);
  }
}

void BandTable::Restore() {
  if (CurrentThreadSettings().DisplayMode & MODE_DEVICE_INDEXES) {
    WriteIdentityIndexes(info_->Indexes());
  }
}

void BandTable::Fill(const BitmapHandle& bitmap, int32_t bits, bool fixedPalette, uint32_t count) {
  info_->header.biClrUsed = count;
  if (bits > 8) return;
  if (CurrentThreadSettings().DisplayMode & MODE_DEVICE_INDEXES) {
    usage_ = DIB_PAL_COLORS;
  } else if (fixedPalette) {
    Vn_GetFixedPalette(info_->colors, static_cast<uint32_t>(bits));
  } else {
    Vn_GetPaletteEntries(ActivePalette(bitmap), 0, ColorsOf(bitmap), info_->colors);
  }
}

}  // namespace vn
