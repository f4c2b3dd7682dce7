// Colours of a row written in another format: what conversion and dithering share.
#ifndef VNCORE_COLOR_COLOR_ROWS_H
#define VNCORE_COLOR_COLOR_ROWS_H

#include <cstddef>
#include <cstdint>

#include <vncore/vncore.h>

namespace vn {

// Writes `width` pixels from a row in the format that the loop was chosen for. `colors`: the table
// of rows of indexes. The rows are apart; nothing outside the pixels is read or written.
using ColorRow = void (*)(const uint8_t* source, uint8_t* target, size_t width,
                          const RGBQUAD* colors);

// The loop from any depth, or from grays of a byte (0 bits), to 16, 24 or 32 bits. Red and blue are
// exchanged for `swap`, and tables count as blue first. The fourth byte of 32 bits becomes 0; from
// 32 to 32 bits it stays.
ColorRow SelectColorRow(int32_t sourceBits, int32_t targetBits, bool swap);

}  // namespace vn

#endif
