// Work on the rows of a bitmap in place: on each row, or on the pairs from both ends inward.
#ifndef VNCORE_GEOMETRY_ROW_MOTION_H
#define VNCORE_GEOMETRY_ROW_MOTION_H

#include <vncore/vncore.h>

namespace vn {

// What is done to a pair of rows of `pixels` pixels and `bytes` bytes in all.
struct RowSize {
  size_t pixels;
  size_t bytes;
};
using RowPairWork = void (*)(uint8_t* first, uint8_t* second, RowSize size);

// Which pairs there are.
enum class RowPairs {
  kEnds,           // row r and row Height - 1 - r, without an odd middle row
  kEndsAndMiddle,  // the same; an odd middle row makes a pair with itself
  kSelf            // each row with itself, in rising order
};

// Runs the work, locked, with progress per pair. Returns OK, ERR_NO_MEMORY, or what the status
// callback returned; the pairs done before are then kept.
VnStatus WorkOnRows(BitmapHandle* bitmap, RowPairs pairs, RowPairWork work, int32_t statusStart,
                    int32_t statusEnd);

}  // namespace vn

#endif
