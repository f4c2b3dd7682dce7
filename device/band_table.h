// What pixel values of a band mean.
#ifndef VNCORE_DEVICE_BAND_TABLE_H
#define VNCORE_DEVICE_BAND_TABLE_H

#include "device/paint_job.h"
#include "kernel/thread_settings.h"

namespace vn {

// ColorCount, as far as there can be entries.
uint32_t ColorsOf(const BitmapHandle& bitmap);

// The record that describes bands to the device, with its table: the thread's own, in which identity
// indexes are left standing, or for a raster printer a fresh copy at each paint, which its driver may
// spoil. And how the device is to read the table. A series of paints uses one of the functions, time
// and again.
class BandTable {
 public:
  // By the display mode: the palette indexes of the device, or the fixed palette for rows that are
  // reduced here and else the bitmap's own; no table above 8 bits. `count`: entries that are told.
  void SetColors(const PaintJob& job, int32_t bits, bool fixedPalette, uint32_t count);
  // The same for rows of the bitmap as they are, in the thread's own record for any device.
  void SetRowColors(const PaintJob& job);
  // 256 grays, or the palette indexes of the device.
  void SetGrays();
  // The bitmap's own two colours, unless the display mode asks for indexes without fixed palettes.
  // Restore must follow: later paints rely on the identity table.
  void SetInks(const PaintJob& job);
  void Restore();

  BitmapInfo256& info() const { return *info_; }
  uint32_t usage() const { return usage_; }

 private:
  void Fill(const BitmapHandle& bitmap, int32_t bits, bool fixedPalette, uint32_t count);

  BitmapInfo256* info_ = nullptr;
  uint32_t usage_ = DIB_RGB_COLORS;
  bool stands_ = false;  // from an earlier paint
};

}  // namespace vn

#endif
