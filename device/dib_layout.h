// The layout of a DIB: header, colour table, rows, in one block.
#ifndef VNCORE_DEVICE_DIB_LAYOUT_H
#define VNCORE_DEVICE_DIB_LAYOUT_H

#include <vncore/vncore.h>

namespace vn {

inline constexpr uint32_t kInfoHeaderBytes = 40;
inline constexpr uint32_t kCoreHeaderBytes = 12;
static_assert(sizeof(BITMAPINFOHEADER) == kInfoHeaderBytes);

// Bytes of all rows, in wrapping 32-bit arithmetic.
uint32_t DibRowSize(uint32_t width, uint32_t height, uint32_t bits);

// Entries of the colour table that a header announces, and the bytes that they take.
uint32_t DibColorCount(const BITMAPINFOHEADER& header);
uint64_t DibColorBytes(const BITMAPINFOHEADER& header);
// Bytes from the header's start to the first row.
uint64_t DibPixelOffset(const BITMAPINFOHEADER& header);

// Zeroes the header and describes an uncompressed picture of the first of 1, 4, 8 and 24 bits that
// `bits` fit into.
void FillDibHeader(BITMAPINFOHEADER* header, int32_t width, int32_t height, int32_t bits);

// Writes the resolutions of `bitmap` into a header.
void StoreResolution(const BitmapHandle& bitmap, BITMAPINFOHEADER* header);

// Pixels per metre; a value of 0 stands for the screen's size in pixels, taken as it is.
struct DibResolution {
  int32_t x = 0, y = 0;
  void ReplaceZeros();
  // Sets the resolutions of `bitmap`, in dots per inch.
  void Apply(BitmapHandle* bitmap) const;
};

// Copies blue, green and red of `count` entries of `entryBytes` bytes each; the fourth byte is 0.
void CopyDibColors(const uint8_t* from, uint32_t entryBytes, uint32_t count, RGBQUAD* to);

}  // namespace vn

#endif
