// The vector loops under row_cells.h.
#ifndef VNCORE_GEOMETRY_ROW_CELLS_LOOPS_H
#define VNCORE_GEOMETRY_ROW_CELLS_LOOPS_H

#include <cstdint>

namespace vn {

// New pixels are made in groups of eight; register j holds pixel j of the group in its low lane and
// pixel j + 4 in its high one. The pixels of a cell are read in chunks of 16 bytes, of which 12
// count where a pixel has 3. All cells have as many full chunks, and one more in part.
constexpr uint32_t kCellGroup = 8;

struct CellPlan {
  uint32_t groups;
  uint32_t fullChunks;
  const uint32_t* starts;  // first byte of the cell of each new pixel
  const uint8_t* larger;  // of each group: bit i is set when the cell of its pixel i is a large one
  // By whether the cell in the low lane (1) and the one in the high lane (2) are large: what counts
  // of the chunk in part.
  alignas(32) uint8_t masks[4][32];
  // 2^24 divided by the sizes. Three channels: by lanes, as above. One: by the four pixels of a
  // lane, the bits as in `larger`.
  alignas(32) uint32_t laneReciprocals[4][8];
  alignas(16) uint32_t pixelReciprocals[16][4];
  // One channel and cells of up to four pixels: brings the cells of four pixels, the bits as in
  // `larger`, from the 16 bytes at the first one's start into a dword each.
  alignas(16) uint8_t quadShuffles[16][16];
};

using CellLoop = void (*)(const CellPlan& plan, const uint8_t* source, uint8_t* target);

// With three channels up to four bytes behind the last group are written.
void AverageCells1Avx2(const CellPlan& plan, const uint8_t* source, uint8_t* target);
// Cells of up to four pixels, groups by fours.
void AverageSmallCells1Avx2(const CellPlan& plan, const uint8_t* source, uint8_t* target);
void AverageCells3Avx2(const CellPlan& plan, const uint8_t* source, uint8_t* target);

}  // namespace vn

#endif
