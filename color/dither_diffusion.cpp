// Error diffusion. A block of a line goes by in two passes. The first walks the pixels: a pixel's
// correction is what earlier lines aimed at it, plus what the pixels before it on this line aim at
// it, divided. It leaves the errors behind. The second spreads those over the lines below, for all
// pixels at once, since nothing there waits for anything.
#include <array>
#include <bit>

#include "color/dither_blocks.h"
#include "color/dither_choice.h"
#include "color/dither_filters.h"
#include "color/dither_loops.h"
#include "color/fixed_palettes.h"

namespace vn {
namespace {

// Errors of one channel: those of a block behind those of the 2 * reach pixels before it, so that
// what reaches back over the block's edge is at hand. Errors are within +-255.
using ErrorLine = std::array<int16_t, kDitherBlock + 2 * kMostReach>;
using Errors = std::array<ErrorLine, 3>;  // red, green, blue

// Adds the errors of a block to the rows of a channel. Pixel x has its entry at x + reach, and
// `entries` starts at that of the pixel `reach` before the block: all that is aimed at the `count`
// pixels from there on is now known. The rows move up on the way: row 0 comes to hold the sums for
// the next line, row 1 those for the line after.
template <int Method>
void Spread(const ErrorLine& errors, int32_t* const* rows, size_t first, size_t count) {
  constexpr DiffusionFilter kFilter = kDiffusionFilters[Method];
  constexpr int kReach = kFilter.reach;
  const auto spreadRow = [&]<int Row>() {
    const int16_t* __restrict from = errors.data() + kReach;
    int32_t* __restrict to = rows[Row - 1] + first;
    const int32_t* __restrict below = Row < kFilter.rows ? rows[Row] + first : nullptr;
    for (size_t i = 0; i < count; ++i) {
      // 16 bits hold it: a row's weights sum to at most 84, errors to 255.
      int16_t sum = 0;
      for (int dx = -kReach; dx <= kReach; ++dx) {
        sum = static_cast<int16_t>(sum +
                                   kFilter.Weight(Row, dx) * from[static_cast<ptrdiff_t>(i) - dx]);
      }
      to[i] = sum + (Row < kFilter.rows ? below[i] : 0);
    }
  };
  spreadRow.template operator()<1>();
  if constexpr (kFilter.rows >= 2) spreadRow.template operator()<2>();
  if constexpr (kFilter.rows >= 3) spreadRow.template operator()<3>();
}

// Runs `walk(block, first, count, errors)` over the blocks of a line and spreads what it leaves.
template <int Method, class Walk>
void DiffuseBlocks(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                   size_t width, Walk&& walk) {
  constexpr size_t kReach = kDiffusionFilters[Method].reach;
  Errors errors{};
  const auto spread = [&](size_t first, size_t count) {
    for (size_t channel = 0; channel < 3; ++channel) {
      ErrorLine& line = errors[channel];
      Spread<Method>(line, run.ErrorRows + 3 * channel, first, count);
      std::copy_n(line.begin() + static_cast<ptrdiff_t>(count), 2 * kReach, line.begin());
    }
  };
  ForDitherBlocks(run, order, source, target, width,
                  [&](DitherBlock& block, size_t first, size_t count) {
                    walk(block, first, count, errors);
                    spread(first, count);
                  });
  // The last pixels' sums, which wait for errors beyond the line: there are none.
  for (ErrorLine& line : errors)
    std::fill_n(line.begin() + 2 * kReach, kReach, int16_t{0});
  spread(width, kReach);
}

// The errors of the pixels just passed on this line.
template <int Method>
struct Behind {
  static constexpr DiffusionFilter kFilter = kDiffusionFilters[Method];
  int32_t last[kFilter.reach] = {};

  // What they aim at the next pixel.
  int32_t Sum() const {
    int32_t sum = 0;
    for (int k = 0; k < kFilter.reach; ++k)
      sum += kFilter.Weight(0, k + 1) * last[k];
    return sum;
  }
  void Pass(int32_t error) {
    for (int k = kFilter.reach - 1; k > 0; --k)
      last[k] = last[k - 1];
    last[0] = error;
  }
};

template <int Method, class Choice>
void DiffuseLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                 size_t width) {
  constexpr DiffusionFilter kFilter = kDiffusionFilters[Method];
  constexpr size_t kReach = kFilter.reach;
  const Choice choice(run);
  Behind<Method> red, green, blue;
  DiffuseBlocks<Method>(
      run, order, source, target, width,
      [&](DitherBlock& block, size_t first, size_t count, Errors& errors) {
        const int32_t* const aimedRed = run.ErrorRows[0] + first + kReach;
        const int32_t* const aimedGreen = run.ErrorRows[3] + first + kReach;
        const int32_t* const aimedBlue = run.ErrorRows[6] + first + kReach;
        auto r = red, g = green, b = blue;
        for (size_t x = 0; x < count; ++x) {
          const RGBQUAD pixel = block.pixels[x];
          const Rgb wanted{
              ClampChannel(pixel.rgbRed + (aimedRed[x] + r.Sum()) / kFilter.divisor),
              ClampChannel(pixel.rgbGreen + (aimedGreen[x] + g.Sum()) / kFilter.divisor),
              ClampChannel(pixel.rgbBlue + (aimedBlue[x] + b.Sum()) / kFilter.divisor)};
          const RGBQUAD answer = run.Answers[choice.Choose(wanted)];
          block.indexes[x] = answer.rgbReserved;
          r.Pass(wanted.red - answer.rgbRed);
          g.Pass(wanted.green - answer.rgbGreen);
          b.Pass(wanted.blue - answer.rgbBlue);
          errors[0][2 * kReach + x] = static_cast<int16_t>(r.last[0]);
          errors[1][2 * kReach + x] = static_cast<int16_t>(g.last[0]);
          errors[2][2 * kReach + x] = static_cast<int16_t>(b.last[0]);
        }
        red = r, green = g, blue = b;
      });
}

}  // namespace

DitherLineProc SelectDiffusionLine(const DitherRecord& run) {
  return WithChoice(run, [&]<class Choice>(Choice*) -> DitherLineProc {
    switch (run.Method) {
      case 1:
        return DiffuseLine<1, Choice>;
      case 2:
        return DiffuseLine<2, Choice>;
      case 3:
        return DiffuseLine<3, Choice>;
      case 4:
        return DiffuseLine<4, Choice>;
      case 5:
        return DiffuseLine<5, Choice>;
      default:
        return DiffuseLine<6, Choice>;
    }
  });
}

}  // namespace vn
