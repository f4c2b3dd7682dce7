// Nearest-pixel scaling of a row over itself.
#ifndef VNCORE_GEOMETRY_SCALE_ROW_IN_PLACE_H
#define VNCORE_GEOMETRY_SCALE_ROW_IN_PLACE_H

#include <cstdint>

namespace vn {

// Scales `row` to `count` pixels, each from pixel d * stepQuotient + floor(d * stepRemainder /
// count) of the same row: quotient and remainder of the old width by `count`. `backward` enlarges,
// from the end of the row to its start, and wants room in the row for the new width; so does any
// depth from 8 bits up. Without it 1 and 4 bits are walked forward, which only shrinks. Where old
// and new row end in the same byte an enlarged row of 1 or 4 bits is ORed over old bits, and a row
// shrunk at 4 bits keeps some old nibbles: callers have these rows as they are. Other depths do
// nothing.
void ScaleRowInPlace(int32_t bitsPerPixel, uint32_t stepQuotient, uint32_t stepRemainder,
                     uint8_t* row, uint32_t count, bool backward);

}  // namespace vn

#endif
