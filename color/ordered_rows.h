// Rows of any depth put into the fixed palettes under a threshold pattern: what ordered dithering
// of lines and of paints share.
#ifndef VNCORE_COLOR_ORDERED_ROWS_H
#define VNCORE_COLOR_ORDERED_ROWS_H

#include "color/color_rows.h"
#include "color/gray_rows.h"
#include "color/ordered_rows_avx2.h"

namespace vn {

class OrderedRows {
 public:
  // `colors`: the table of rows of indexes. Red and blue are exchanged for `swap`. The target has
  // 1, 4 or 8 bits.
  OrderedRows(int32_t sourceBits, bool swap, const RGBQUAD* colors, int32_t targetBits);

  // Writes the indexes of the `width` pixels from pixel `first` of the source on, from the start of
  // `target` on. `thresholds`: eight, those of the first pixels, which come round; at most 254.
  // Bits of a last byte behind the last pixel keep what they held. A row may be dithered where it
  // lies when it does not become longer.
  void Dither(const uint8_t* source, size_t first, const uint8_t* thresholds, uint8_t* target,
              size_t width) const;

 private:
  // Pixels of three or four bytes, or their grays to 1 bit.
  using Loop = void (*)(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                        size_t count);
  static Loop LoopTo(int32_t targetBits, OrderedPixels pixels);

  size_t sourceBits_, targetBits_;
  const RGBQUAD* colors_;
  bool direct_;  // loops, or those to gray, take pixels from the source itself
  ColorRow read_;
  GrayRow grays_;
  Loop loop_;
};

}  // namespace vn

#endif
