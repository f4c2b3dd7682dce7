// The mirror of packed rows at every depth.
#ifndef VNCORE_GEOMETRY_MIRROR_ROW_H
#define VNCORE_GEOMETRY_MIRROR_ROW_H

#include "geometry/row_motion.h"

namespace vn {

// The work that mirrors two rows left to right and exchanges them; a row paired with itself is
// mirrored. Bits of the last byte behind the last pixel become 0, bytes behind it stay. Depths
// other than the six count as 32 bits.
RowPairWork MirrorWork(int32_t bitsPerPixel);

// The work that exchanges two rows, all of their bytes.
RowPairWork ExchangeWork();

}  // namespace vn

#endif
