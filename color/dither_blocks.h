// Rows of a dithering run in blocks of pixels: any source format becomes colours, and indexes
// become any target format, so that the loops between know of neither. A block is read whole before
// any of it is written, and what is written never reaches pixels that are not read: rows can be
// dithered in place.
#ifndef VNCORE_COLOR_DITHER_BLOCKS_H
#define VNCORE_COLOR_DITHER_BLOCKS_H

#include <algorithm>
#include <cstddef>

#include "color/color_rows.h"
#include "color/dither_state.h"

namespace vn {

inline constexpr size_t kDitherBlock = 256;  // a multiple of 8: blocks start at whole bytes

struct DitherBlock {
  alignas(32) RGBQUAD pixels[kDitherBlock];  // the fourth byte means nothing
  alignas(32) uint8_t indexes[kDitherBlock];
};

using WriteIndexesProc = void (*)(const uint8_t* indexes, size_t count, uint8_t* target);

WriteIndexesProc SelectWriteIndexes(int32_t bits);

// Calls `choose(block, first, count)` for the blocks of a line, from left to right, to turn
// block.pixels into block.indexes.
template <class Choose>
void ForDitherBlocks(const DitherRecord& run, uint32_t order, const uint8_t* source,
                     uint8_t* target, size_t width, Choose&& choose) {
  const bool swap = run.SourceBits > 8 && order != ORDER_BGR;
  const ColorRow read = SelectColorRow(run.SourceBits, 32, swap);
  const WriteIndexesProc write = SelectWriteIndexes(run.TargetBits);
  const auto sourceBytes = kDitherBlock * static_cast<size_t>(run.SourceBits) / 8;
  const auto targetBytes = kDitherBlock * static_cast<size_t>(run.TargetBits) / 8;
  DitherBlock block;
  for (size_t first = 0; first < width; first += kDitherBlock) {
    const size_t count = std::min(kDitherBlock, width - first);
    read(source, reinterpret_cast<uint8_t*>(block.pixels), count, run.SourceColors);
    choose(block, first, count);
    write(block.indexes, count, target);
    source += sourceBytes;
    target += targetBytes;
  }
}

}  // namespace vn

#endif
