// A colour histogram, and the splitting of its colours into boxes.
#ifndef VNCORE_COLOR_COLOR_BOXES_H
#define VNCORE_COLOR_COLOR_BOXES_H

#include <cstdint>

#include <vncore/vncore.h>
#include "kernel/pixel_format.h"

namespace vn {

// The 15-bit colours of a picture, laid out as a match table. `counts` has kMatchCells words,
// cleared; `list` as many, and receives the cells that occur, in the order of first sight.
struct ColorHistogram {
  uint32_t* counts;
  uint32_t* list;
  uint32_t listed = 0;

  void Add(uint32_t cell) {
    uint32_t& count = counts[cell];
    if (count == 0) list[listed++] = cell;
    count += count != 0xFFFFFFFF;
  }
};

// A box: a stretch of the colour list. Every word wraps silently; on pictures of more pixels than
// its sums can hold the split is less good, and still repeatable.
struct ColorBox {
  uint32_t First;                         // index of its first colour in the list
  uint32_t Count;                         // distinct colours
  uint32_t MeanRed, MeanGreen, MeanBlue;  // of 5-bit components, weighted by pixels, truncated
  uint32_t VarianceRed, VarianceGreen, VarianceBlue, VarianceTotal;
  uint32_t Weight;  // pixels
  uint32_t SumRed, SumGreen, SumBlue;
};

// Splits the listed colours into at most `most` boxes and returns their number, at least 1. `boxes`
// has `most` records. Reorders the list, so that each box is a contiguous stretch of it. The work
// depends on the number of distinct colours, not on the picture's size.
uint32_t SplitIntoBoxes(const ColorHistogram& histogram, ColorBox* boxes, uint32_t most);

}  // namespace vn

#endif
