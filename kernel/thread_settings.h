// The calling thread's settings, and the words of the process.
#ifndef VNCORE_KERNEL_THREAD_SETTINGS_H
#define VNCORE_KERNEL_THREAD_SETTINGS_H

#include <vncore/vncore.h>

namespace vn {

// A BITMAPINFO with a full colour table. In index form the first 256 16-bit words of the table are
// palette indexes.
struct BitmapInfo256 {
  BITMAPINFOHEADER header;
  RGBQUAD colors[256];

  uint16_t* Indexes() { return reinterpret_cast<uint16_t*>(colors); }
  const BITMAPINFO* Info() const { return reinterpret_cast<const BITMAPINFO*>(this); }
};

struct ThreadSettings {
  uint32_t* UserMatchTable;
  HDC PrintJobDC;
  VnOpenProc OpenProc;
  VnReadProc ReadProc;
  VnWriteProc WriteProc;
  VnSeekProc SeekProc;
  VnCloseProc CloseProc;
  uint32_t DefaultDithering;
  int32_t DefaultXResolution;
  int32_t DefaultYResolution;
  VnStatusCallBack StatusCallBack;
  BitmapInfo256 PaintInfo;         // what the renderers hand to the device
  BitmapInfo256 PrinterPaintInfo;  // the copy of it that a printer driver may spoil
  uint32_t DisplayMode;
};

// The calling thread's block. A thread that was never attached gets its block here.
ThreadSettings& CurrentThreadSettings();

// Writes 0 to 255, the identity table of DIB_PAL_COLORS.
void WriteIdentityIndexes(uint16_t* indexes);

// True on Win32s, where storage goes through global memory and temporary files. Written only at the
// first process attachment.
bool OnWin32s();

}  // namespace vn

#endif
