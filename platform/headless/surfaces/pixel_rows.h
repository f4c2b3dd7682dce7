// Rows of pixels of any layout, to and from one word a pixel.
#ifndef VNCORE_PLATFORM_HEADLESS_PIXEL_ROWS_H
#define VNCORE_PLATFORM_HEADLESS_PIXEL_ROWS_H

#include "platform/headless/surfaces/surface.h"

namespace headless {

// Pixels x to x + count - 1 of a row, as they stand: indexes, or words with their fields.
void LoadPixels(const uint8_t* row, uint32_t bits, int32_t x, int32_t count, uint32_t* pixels);

// Puts them back; bits above the depth are dropped. Neighbours in shared bytes are kept.
void StorePixels(uint8_t* row, uint32_t bits, int32_t x, int32_t count, const uint32_t* pixels);

// Words with fields to 0xRRGGBB and back, in place. Narrow fields are widened by repeating their
// bits, and channels are narrowed by dropping low ones. Nothing is done for layouts that hold
// 0xRRGGBB as it is.
void PixelsToRgb(const PixelLayout& layout, int32_t count, uint32_t* pixels);
void RgbToPixels(const PixelLayout& layout, int32_t count, uint32_t* pixels);

}  // namespace headless

#endif
