#include "device/band.h"

#include <algorithm>

#include "color/fixed_palettes.h"
#include "color/palettes.h"

namespace vn {
namespace {

constexpr uint32_t kBandBytes = 65536;

bool DeviceIndexes() { return CurrentThreadSettings().DisplayMode & MODE_DEVICE_INDEXES; }

}  // namespace

BitmapInfo256* ChooseBandInfo(HDC hDC) {
  ThreadSettings& settings = CurrentThreadSettings();
  if (GetDeviceCaps(hDC, TECHNOLOGY) != DT_RASPRINTER) return &settings.PaintInfo;
  settings.PrinterPaintInfo = settings.PaintInfo;
  return &settings.PrinterPaintInfo;
}

uint32_t SetBandColors(BitmapInfo256* info, const BitmapHandle* bitmap, int32_t bits,
                       bool fixedPalette) {
  info->header.biClrUsed = 0;
  if (bits > 8) return DIB_RGB_COLORS;
  if (DeviceIndexes()) {
    info->header.biClrUsed = 1u << bits;
    return DIB_PAL_COLORS;
  }
  if (!fixedPalette) return SetBandPalette(info, bitmap);
  info->header.biClrUsed = 1u << bits;
  Vn_GetFixedPalette(info->colors, static_cast<uint32_t>(bits));
  return DIB_RGB_COLORS;
}

uint32_t SetBandGrays(BitmapInfo256* info) {
  info->header.biClrUsed = 256;
  if (DeviceIndexes()) return DIB_PAL_COLORS;
  std::copy(GrayRamp256.begin(), GrayRamp256.end(), info->colors);
  return DIB_RGB_COLORS;
}

uint32_t SetBandPalette(BitmapInfo256* info, const BitmapHandle* bitmap) {
  const uint32_t count = std::min(static_cast<uint32_t>(bitmap->ColorCount), kMaxColors);
  info->header.biClrUsed = count;
  Vn_GetPaletteEntries(ActivePalette(*bitmap), 0, count, info->colors);
  return DIB_RGB_COLORS;
}

Band::Band(const PaintJob& job, const Form& form, BitmapInfo256* info)
    : job_(job), form_(form), info_(info) {
  const uint64_t stride =
      (static_cast<uint64_t>(form.bits) * static_cast<uint64_t>(form.width) + 31) / 32 * 4;
  // A row above the limit goes out alone.
  const uint64_t rows = std::min<uint64_t>(std::max<uint64_t>(kBandBytes / stride, 1), form.rows);
  // One row more than is sent: loops that write whole words may run over a row's end.
  buffer_ = ZeroedScratch<uint8_t>((rows + 1) * stride);
  if (!buffer_) return;
  stride_ = static_cast<uint32_t>(stride);
  capacity_ = static_cast<uint32_t>(rows);
  next_ = buffer_.data();
  last_ = next_;
  info->header.biWidth = form.width;
  info->header.biBitCount = static_cast<WORD>(form.bits);
}

void Band::CommitRows(uint32_t rows, int32_t y) {
  next_ += size_t{rows} * stride_;
  last_ = next_ - stride_;
  y_ = y;
  count_ += rows;
  if (count_ == capacity_) SendBand();
}

void Band::SendRows(const uint8_t* rows, uint32_t count, int32_t y) {
  info_->header.biHeight = static_cast<LONG>(count);
  info_->header.biSizeImage = count * stride_;
  const int width = form_.width - form_.skip;
  const int height = static_cast<int>(count);
  StretchDIBits(job_.hDC, form_.x, y, width, height, form_.skip, 0, width, height, rows,
                info_->Info(), usage_, job_.rasterOp);
}

void Band::SendBand() {
  SendRows(buffer_.data(), count_, y_);
  count_ = 0;
  next_ = buffer_.data();
}

}  // namespace vn
