// One paint as it was planned: what every renderer is given.
#ifndef VNCORE_DEVICE_PAINT_JOB_H
#define VNCORE_DEVICE_PAINT_JOB_H

#include <vncore/vncore.h>

namespace vn {

struct PaintTools;

// Rows in a caller's buffer, in place of the bitmap's storage: `count` rows at BytesPerLine from
// each other, of which the first is storage row `first`. None for null.
struct CallerRows {
  const uint8_t* rows = nullptr;
  int32_t first = 0;
  int32_t count = 0;
};

struct PaintJob {
  HDC hDC;
  BitmapHandle* bitmap;  // locked
  CallerRows callerRows;
  RECT source;           // maps onto `destination`; columns and storage rows
  RECT sourceClip;       // not empty, within `source` and the bitmap
  RECT destination;      // device coordinates
  RECT destinationClip;  // within `destination`; limits what is written
  uint32_t rasterOp;
  // The device's pixels are known to lie apart from the bitmap's: rows may go out from where they
  // lie. A bitmap can be painted on itself, and then every band is a copy.
  bool apart = false;

  bool BottomFirst() const { return bitmap->ViewOrigin == VIEW_BOTTOM_FIRST; }
};

// The five renderers. All hand the device finished rows at 1:1 in bands, with memory for a few rows
// whatever the picture's size, and leave what the next paint of their kind can use in `tools`. Return OK, ERR_NO_MEMORY (nothing painted), and the first two
// ERR_INVALID_PARAMETER when no loop leads from the bitmap's depth to the device's.
// `deviceBits` and `kind` are of Vn_GetDitherFlags; the two take PAINT_DIRECT, PAINT_EXPAND and
// PAINT_DITHER, and any other kind as PAINT_DIRECT.
VnStatus PaintScaled(const PaintJob& job, int32_t deviceBits, int32_t kind, PaintTools* tools);
VnStatus PaintUnscaled(const PaintJob& job, int32_t deviceBits, int32_t kind, PaintTools* tools);
// 1 bit, scaled by ink count. Palette entry 0 is the ink, or entry 1 with `invert`.
VnStatus PaintBitonalVote(const PaintJob& job, bool invert, PaintTools* tools);
// 1 bit as 8-bit gray, averaged or interpolated; 1:1 in the second. Bit 1 is dark with `invert`.
VnStatus PaintBitonalGrayScaled(const PaintJob& job, bool invert, PaintTools* tools);
VnStatus PaintBitonalGray(const PaintJob& job, bool invert, PaintTools* tools);

}  // namespace vn

#endif
