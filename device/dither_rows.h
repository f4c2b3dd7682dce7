// The row loops of the display path: a row comes in at the bitmap's depth and goes out as indexes
// of the fixed palette of the device's depth, in one pass.
#ifndef VNCORE_DEVICE_DITHER_ROWS_H
#define VNCORE_DEVICE_DITHER_ROWS_H

#include <vncore/vn_bitmap.h>

namespace vn {

// One pixel's place in the error row that lives between the rows of a paint, in sixteenths of a
// channel step. A paint starts with zeros; what rows leave, at most 9 times 255 either way, is all
// that the loops expect here.
struct DiffusionCell {
  int32_t red, green, blue;
};

// A member of the family. Pixels `first` to `last` - 1 of `source` go to `destination` from its
// first bit on; bits of a last partial byte that belong to no pixel are kept. `patternX` and
// `patternY` are the matrix column of the first pixel and the matrix row (ordered members);
// `errors` holds a cell for each pixel (diffusion members); `colors` is the palette of sources of
// up to 8 bits. Of `bitmap` only ColorOrder is read, and only for deeper sources.
using DitherRow = void (*)(uint8_t* destination, const uint8_t* source, const BitmapHandle* bitmap,
                           int32_t first, int32_t last, uint32_t patternX, int32_t patternY,
                           DiffusionCell* errors, const RGBQUAD* colors);

// The member for a pair of depths under the thread's display mode: ordered or diffusing, and for
// ordered 1-bit rows the matrix. Null for pairs that have none: from 1 bit to 1 or 4, and to any
// depth but 1, 4 and 8.
DitherRow SelectDitherRow(int32_t sourceBits, int32_t destinationBits);

}  // namespace vn

#endif
