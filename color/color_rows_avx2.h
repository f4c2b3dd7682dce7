// The vector forms of colour rows; only color_rows.cpp calls them.
#ifndef VNCORE_COLOR_COLOR_ROWS_AVX2_H
#define VNCORE_COLOR_COLOR_ROWS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// Write pixels from the start of a row on, in groups. Return how many. `colors`: the table of rows
// of indexes, four bytes an entry.
using ColorVectors = size_t(const uint8_t* source, uint8_t* target, size_t width,
                            const uint8_t* colors);

// By the source's bits (0 for grays, 8, 16, 24, 32), the target's (16, 24, 32), and whether red and
// blue are exchanged. Null where a row is only copied.
extern ColorVectors* const kColorVectorsAvx2[5][3][2];

}  // namespace vn

#endif
