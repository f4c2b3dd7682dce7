// The vector form of looking colours up by their cells; only dither_ordered.cpp calls it.
#ifndef VNCORE_COLOR_CELL_ANSWERS_AVX2_H
#define VNCORE_COLOR_CELL_ANSWERS_AVX2_H

#include <cstddef>
#include <cstdint>

namespace vn {

// What a cell holds that has not been asked for yet; any other value is a palette index.
inline constexpr uint16_t kNoAnswer = 0x100;

// Writes the answers for the cells of pixels of 32 bits, in eights, up to the first eight with a
// cell that has none. Returns the pixels written. `answers` has an entry for each of the 32768 cells.
size_t CellAnswersAvx2(const uint8_t* pixels, size_t count, const uint16_t* answers,
                       uint8_t* indexes);

}  // namespace vn

#endif
