// Loops without error: the nearest colour of each pixel, and the two threshold matrices.
#include "color/dither_blocks.h"
#include "color/dither_choice.h"
#include "color/dither_loops.h"
#include "color/threshold_matrices.h"

namespace vn {
namespace {

template <class Choice>
void NearestLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                 size_t width) {
  const Choice choice(run);
  ForDitherBlocks(run, order, source, target, width, [&](DitherBlock& block, size_t, size_t count) {
    for (size_t x = 0; x < count; ++x) {
      const uint32_t place = choice.Choose(ColorOf(block.pixels[x]));
      block.indexes[x] = run.Answers[place].rgbReserved;
    }
  });
}

template <class Choice>
void OrderedLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                 size_t width) {
  const auto& matrix = run.Method == DITHER_CLUSTERED ? ClusteredMatrix : OrderedMatrix;
  const uint8_t* const thresholds = matrix[run.LineCount++ & 7];
  const Choice choice(run);
  ForDitherBlocks(run, order, source, target, width, [&](DitherBlock& block, size_t, size_t count) {
    for (size_t x = 0; x < count; ++x) {
      const uint32_t place = choice.ChooseOrdered(ColorOf(block.pixels[x]), thresholds[x & 7]);
      block.indexes[x] = run.Answers[place].rgbReserved;
    }
  });
}

}  // namespace

DitherLineProc SelectNearestLine(const DitherRecord& run) {
  return WithChoice(run, []<class Choice>(Choice*) { return NearestLine<Choice>; });
}

DitherLineProc SelectOrderedLine(const DitherRecord& run) {
  return WithChoice(run, []<class Choice>(Choice*) { return OrderedLine<Choice>; });
}

}  // namespace vn
