// Printing through the library's own paint.
#include <algorithm>

#include "color/palettes.h"
#include "device/page_layout.h"
#include "device/paint_plan.h"
#include "device/print_job.h"
#include "device/realized_palette.h"
#include "kernel/guards.h"
#include "kernel/progress.h"
#include "kernel/rects.h"
#include "kernel/scratch_buffer.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

// The printable page; its first row and column are kept free.
RECT PageOf(HDC context) {
  return {1, 1, GetDeviceCaps(context, HORZRES), GetDeviceCaps(context, VERTRES)};
}

struct ModeChange {
  uint32_t mask, value;
};

// A device of single dots takes clustered ones, which it can hold apart; any other driver reduces
// colours better than the screen's palettes would.
ModeChange PrinterMode(HDC context) {
  const int bits = GetDeviceCaps(context, TECHNOLOGY) == DT_METAFILE
                       ? 24
                       : GetDeviceCaps(context, BITSPIXEL) * GetDeviceCaps(context, PLANES);
  if (bits == 1 && GetDeviceCaps(context, NUMCOLORS) <= 2) {
    constexpr uint32_t kDots = MODE_ORDERED_DITHER | MODE_CLUSTERED_MATRIX;
    return {kDots | MODE_DEVICE_INDEXES, kDots};
  }
  return {MODE_DEVICE_INDEXES | MODE_DITHER, 0};
}

void PaintPart(HDC context, BitmapHandle* bitmap, const RECT& area, const RECT* part) {
  const ModeChange mode = PrinterMode(context);
  const DisplayModeScope scope(mode.mask, mode.value);
  PaintBitmap(context, bitmap, nullptr, nullptr, &area, part, SRCCOPY);
}

// With a callback a row of the device at a time, so that the job can be followed and stopped.
VnStatus PaintArea(HDC context, BitmapHandle* bitmap, const RECT& area) {
  Progress progress(static_cast<uint32_t>(area.bottom - area.top));
  if (!progress.Begin()) return progress.Result();
  if (RectIsEmpty(area)) return OK;
  if (!Vn_GetStatusCallBack()) {
    PaintPart(context, bitmap, area, nullptr);
    return OK;
  }
  for (int32_t y = area.top; y < area.bottom; ++y) {
    const RECT row = {area.left, y, area.right, y + 1};
    PaintPart(context, bitmap, area, &row);
    if (!progress.Step()) return progress.Result();
  }
  return OK;
}

VnStatus PaintOnPage(HDC context, BitmapHandle* bitmap, const Placement& wanted) {
  const RealizedPalette palette(context, Vn_CreatePaintPalette(context, bitmap));
  const RECT area = PlaceOnPage(PageOf(context), bitmap->Width, bitmap->Height, wanted);
  return PaintArea(context, bitmap, area);
}

// A bitmap without storage prints as none at all: the job goes on.
bool HasPicture(const BitmapHandle* bitmap) { return bitmap && (bitmap->Flags & FLAG_ALLOCATED); }

void DescribeForDevice(const BitmapHandle& bitmap, BitmapInfo256* info) {
  info->header.biSize = sizeof info->header;
  info->header.biWidth = bitmap.Width;
  info->header.biHeight = bitmap.Height;
  info->header.biPlanes = 1;
  info->header.biBitCount = static_cast<WORD>(bitmap.BitsPerPixel);
  info->header.biCompression = BI_RGB;
  info->header.biSizeImage = bitmap.BytesPerLine * static_cast<uint32_t>(bitmap.Height);
  if (bitmap.BitsPerPixel > 8) return;
  const uint32_t count = std::min(static_cast<uint32_t>(bitmap.ColorCount), kMaxColors);
  info->header.biClrUsed = count;
  Vn_GetPaletteEntries(ActivePalette(bitmap), 0, count, info->colors);
}

// The whole bitmap in one call. The bitmap's own size is the destination's and the caller's size the
// source's, an order of arguments that callers have come to rely on.
void SendRows(HDC context, BitmapHandle* bitmap, const BitmapInfo256& info,
              const Placement& wanted) {
  const BitmapLock lock(bitmap);
  StretchDIBits(context, wanted.x, wanted.y, bitmap->Width, bitmap->Height, 0, 0, wanted.width,
                wanted.height, bitmap->Bits, info.Info(), DIB_RGB_COLORS, SRCCOPY);
}

void SendBitmap(HDC context, BitmapHandle* bitmap, const Placement& wanted) {
  const ScratchBuffer<BitmapInfo256> info(1, Fill::kZero);
  if (!info) return;
  const RealizedPalette palette(
      context, bitmap->BitsPerPixel <= 8 ? Vn_CreatePaintPalette(context, bitmap) : nullptr);
  DescribeForDevice(*bitmap, &info[0]);
  if (bitmap->ViewOrigin != VIEW_TOP_FIRST) return SendRows(context, bitmap, info[0], wanted);
  // Turned over into device order and back, unheard: this way of printing reports nothing.
  const MutedStatus muted;
  if (Vn_FlipBitmap(bitmap) != OK) return;
  SendRows(context, bitmap, info[0], wanted);
  Vn_FlipBitmap(bitmap);
}

}  // namespace
}  // namespace vn

HDC VN_CALL Vn_PrintBitmap(BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width,
                           int32_t height, int32_t last) {
  vn::ThreadSettings& settings = vn::CurrentThreadSettings();
  const HDC job = Vn_PrintBitmapExt(settings.PrintJobDC, bitmap, x, y, width, height, last);
  settings.PrintJobDC = last ? nullptr : job;
  return job;
}

HDC VN_CALL Vn_PrintBitmapExt(HDC hDC, BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width,
                              int32_t height, int32_t last) {
  const HDC job = hDC ? hDC : vn::OpenPrintJob();
  if (!job) return nullptr;
  const VnStatus status =
      vn::HasPicture(bitmap) ? vn::PaintOnPage(job, bitmap, {x, y, width, height}) : OK;
  if (status != OK && !hDC) {
    vn::AbortPrintJob(job);
    return nullptr;
  }
  const bool ended = !last || vn::FinishPrintJob(job);
  return status == OK && ended ? job : nullptr;
}

HDC VN_CALL Vn_PrintBitmapFast(HDC hDC, BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width,
                               int32_t height, int32_t last) {
  const bool pixels = vn::HasPicture(bitmap);
  if (pixels && ((bitmap->Flags & FLAG_ON_DISK) || bitmap->BitsPerPixel == 16 ||
                 bitmap->BitsPerPixel == 32)) {
    return Vn_PrintBitmapExt(hDC, bitmap, x, y, width, height, last);
  }
  const HDC job = hDC ? hDC : vn::OpenPrintJob();
  if (!job) return nullptr;
  if (pixels) vn::SendBitmap(job, bitmap, {x, y, width, height});
  return !last || vn::FinishPrintJob(job) ? job : nullptr;
}
