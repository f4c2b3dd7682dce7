// Loops without error: the nearest colour of each pixel, and the two threshold matrices.
#include "color/cell_answers_avx2.h"
#include "color/dither_blocks.h"
#include "color/dither_choice.h"
#include "color/dither_loops.h"
#include "color/ordered_rows.h"
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

#ifdef VNCORE_HAVE_AVX2
// Vectors go on until a cell has no answer yet; it gets one then.
void NearestCellLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                     size_t width) {
  const CellChoice choice(run);
  ForDitherBlocks(run, order, source, target, width, [&](DitherBlock& block, size_t, size_t count) {
    const auto* const pixels = reinterpret_cast<const uint8_t*>(block.pixels);
    for (size_t x = 0; x < count;) {
      x += CellAnswersAvx2(pixels + 4 * x, count - x, run.CellAnswers, block.indexes + x);
      for (const size_t end = std::min(x + 8, count); x < end; ++x) {
        const Rgb color = ColorOf(block.pixels[x]);
        block.indexes[x] = run.Answers[choice.Choose(color)].rgbReserved;
        run.CellAnswers[CellOf(color)] = block.indexes[x];
      }
    }
  });
}
#endif

const uint8_t* NextThresholds(DitherRecord& run) {
  const auto& matrix = run.Method == DITHER_CLUSTERED ? ClusteredMatrix : OrderedMatrix;
  return matrix[run.LineCount++ & 7];
}

// To a fixed palette at its own depth indexes are bits of the colours. Without a pattern each
// channel has the threshold in its middle.
template <bool Patterned>
void FixedLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
               size_t width) {
  constexpr uint8_t kMiddle = 127, kNoShift = 128;
  uint8_t middle[8];
  std::fill_n(middle, 8, run.TargetBits == 8 ? kNoShift : kMiddle);
  const bool swap = run.SourceBits > 8 && order != ORDER_BGR;
  OrderedRows(run.SourceBits, swap, run.SourceColors, run.TargetBits)
      .Dither(source, 0, Patterned ? NextThresholds(run) : middle, target, width);
}

template <class Choice>
void OrderedLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                 size_t width) {
  const uint8_t* const thresholds = NextThresholds(run);
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
  if (run.TargetBits == DepthOfFixed(run)) return FixedLine<false>;
#ifdef VNCORE_HAVE_AVX2
  if (run.CellAnswers) return NearestCellLine;
#endif
  return WithChoice(run, []<class Choice>(Choice*) { return NearestLine<Choice>; });
}

DitherLineProc SelectOrderedLine(const DitherRecord& run) {
  if (run.TargetBits == DepthOfFixed(run)) return FixedLine<true>;
  return WithChoice(run, []<class Choice>(Choice*) { return OrderedLine<Choice>; });
}

}  // namespace vn
