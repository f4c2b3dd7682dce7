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

// The whole error is given on, no more and no less: so a correction is never larger than the
// largest error, which the tables of the loops rely on.
constexpr bool GivesOnWholeError(const DiffusionFilter& filter) {
  int32_t sum = 0;
  for (const auto& row : filter.weights) {
    for (const int16_t weight : row)
      sum += weight;
  }
  return sum == filter.divisor;
}
static_assert(GivesOnWholeError(kDiffusionFilters[1]) && GivesOnWholeError(kDiffusionFilters[2]) &&
              GivesOnWholeError(kDiffusionFilters[3]) && GivesOnWholeError(kDiffusionFilters[4]) &&
              GivesOnWholeError(kDiffusionFilters[5]) && GivesOnWholeError(kDiffusionFilters[6]));

template <int Method>
inline constexpr DiffusionFilter kFilter = kDiffusionFilters[Method];

// For the pixel `dx` columns to the right, `row` lines down.
template <int Method>
constexpr int32_t Weight(int row, int dx) {
  return kFilter<Method>.weights[row][kMostReach + dx];
}

// Errors of one channel: those of a block behind those of the 2 * reach pixels before it, so that
// what reaches back over the block's edge is at hand. Errors are within +-255.
using ErrorLine = std::array<int16_t, kDitherBlock + 2 * kMostReach>;
using Errors = std::array<ErrorLine, 3>;  // red, green, blue

// Adds the errors of a block, which starts at pixel `first`, to the rows of a channel. All that is
// aimed at the `count` pixels from `first` - reach on is now known; the entry of pixel x sits at
// x + reach, so theirs start at `first`. The rows move up on the way: row 0 comes to hold the sums
// for the next line, row 1 those for the line after.
template <int Method>
void Spread(const ErrorLine& errors, int32_t* const* rows, size_t first, size_t count) {
  constexpr int kReach = kFilter<Method>.reach;
  const auto spreadRow = [&]<int Row>() {
    const int16_t* __restrict from = errors.data() + kReach;
    int32_t* __restrict to = rows[Row - 1] + first;
    const int32_t* __restrict below = Row < kFilter<Method>.rows ? rows[Row] + first : nullptr;
    for (size_t i = 0; i < count; ++i) {
      // 16 bits hold it: a row's weights sum to at most 84, errors to 255.
      int16_t sum = 0;
      for (int dx = -kReach; dx <= kReach; ++dx) {
        sum = static_cast<int16_t>(sum +
                                   Weight<Method>(Row, dx) * from[static_cast<ptrdiff_t>(i) - dx]);
      }
      to[i] = sum + (Row < kFilter<Method>.rows ? below[i] : 0);
    }
  };
  spreadRow.template operator()<1>();
  if constexpr (kFilter<Method>.rows >= 2) spreadRow.template operator()<2>();
  if constexpr (kFilter<Method>.rows >= 3) spreadRow.template operator()<3>();
}

// Runs `walk(block, first, count, errors)` over the blocks of a line and spreads what it leaves.
template <int Method, class Walk>
void DiffuseBlocks(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                   size_t width, Walk&& walk) {
  constexpr size_t kReach = kFilter<Method>.reach;
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
  int32_t last[kFilter<Method>.reach] = {};

  // What they aim at the next pixel, from the `nearest` of them on.
  int32_t Sum(int nearest = 1) const {
    int32_t sum = 0;
    for (int k = nearest; k <= kFilter<Method>.reach; ++k) {
      sum += Weight<Method>(0, k) * last[k - 1];
    }
    return sum;
  }
  void Pass(int32_t error) {
    for (int k = kFilter<Method>.reach - 1; k > 0; --k)
      last[k] = last[k - 1];
    last[0] = error;
  }
};

// `channel` plus sum / divisor, truncated toward zero. Sums are below 2^16, so where the divisor is
// a power of two the top bits of a negative one are the divisor less 1, which is what truncation
// adds.
template <int Method>
int32_t Corrected(int32_t channel, int32_t sum) {
  constexpr int32_t kDivisor = kFilter<Method>.divisor;
  if constexpr (std::has_single_bit(static_cast<uint32_t>(kDivisor))) {
    constexpr int kShift = std::countr_zero(static_cast<uint32_t>(kDivisor));
    const auto rounding = static_cast<int32_t>(static_cast<uint32_t>(sum) >> (32 - kShift));
    return (sum + channel * kDivisor + rounding) >> kShift;
  } else {
    return channel + sum / kDivisor;
  }
}

// The sums that earlier lines aimed at the pixels of a block, by channel.
template <int Method>
const int32_t* AimedAt(const DitherRecord& run, int channel, size_t first) {
  return run.ErrorRows[3 * channel] + first + kFilter<Method>.reach;
}

template <int Method, class Choice>
void DiffuseLine(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                 size_t width) {
  constexpr size_t kBefore = 2 * kFilter<Method>.reach;
  const Choice choice(run);
  Behind<Method> red, green, blue;
  const auto walk = [&](DitherBlock& block, size_t first, size_t count, Errors& errors) {
    const int32_t* const aimedRed = AimedAt<Method>(run, 0, first);
    const int32_t* const aimedGreen = AimedAt<Method>(run, 1, first);
    const int32_t* const aimedBlue = AimedAt<Method>(run, 2, first);
    auto r = red, g = green, b = blue;
    for (size_t x = 0; x < count; ++x) {
      const RGBQUAD pixel = block.pixels[x];
      const Rgb wanted{ClampChannel(Corrected<Method>(pixel.rgbRed, aimedRed[x] + r.Sum())),
                       ClampChannel(Corrected<Method>(pixel.rgbGreen, aimedGreen[x] + g.Sum())),
                       ClampChannel(Corrected<Method>(pixel.rgbBlue, aimedBlue[x] + b.Sum()))};
      const RGBQUAD answer = run.Answers[choice.Choose(wanted)];
      block.indexes[x] = answer.rgbReserved;
      r.Pass(wanted.red - answer.rgbRed);
      g.Pass(wanted.green - answer.rgbGreen);
      b.Pass(wanted.blue - answer.rgbBlue);
      errors[0][kBefore + x] = static_cast<int16_t>(r.last[0]);
      errors[1][kBefore + x] = static_cast<int16_t>(g.last[0]);
      errors[2][kBefore + x] = static_cast<int16_t>(b.last[0]);
    }
    red = r, green = g, blue = b;
  };
  DiffuseBlocks<Method>(run, order, source, target, width, walk);
}

// On the whole 256-colour palette the channels go their own ways: index bits and error of a channel
// depend on that channel alone. They are looked up by the channel's corrected value, which need not
// be clamped first: errors and so corrections are below 64.
struct Level {
  int16_t next;  // what the error aims at the next pixel
  int16_t error;
  uint32_t bits;  // of the index
};
constexpr int kLevelMargin = 64;
using Levels = std::array<Level, 256 + 2 * kLevelMargin>;

template <int Method>
constexpr Levels MakeLevels(uint32_t (*bitsOf)(uint32_t), BYTE RGBQUAD::*channel) {
  Levels levels{};
  for (int i = 0; i < static_cast<int>(levels.size()); ++i) {
    const int32_t value = ClampChannel(i - kLevelMargin);
    const uint32_t bits = bitsOf(static_cast<uint32_t>(value));
    const int32_t error = value - FixedPalette256[bits].*channel;
    levels[static_cast<size_t>(i)] = {static_cast<int16_t>(Weight<Method>(0, 1) * error),
                                      static_cast<int16_t>(error), bits};
  }
  return levels;
}

template <int Method>
constexpr Levels kRedLevels = MakeLevels<Method>([](uint32_t v) { return v & 0xE0; },
                                                 &RGBQUAD::rgbRed);
template <int Method>
constexpr Levels kGreenLevels = MakeLevels<Method>([](uint32_t v) { return v >> 5 << 2; },
                                                   &RGBQUAD::rgbGreen);
template <int Method>
constexpr Levels kBlueLevels = MakeLevels<Method>([](uint32_t v) { return v >> 6; },
                                                  &RGBQUAD::rgbBlue);

// A channel's walk along a line.
template <int Method>
struct ChannelWalk {
  Behind<Method> behind;
  int32_t next = 0;

  uint32_t Step(const Levels& levels, int32_t channel, int32_t aimed, int16_t* error) {
    const int32_t place = Corrected<Method>(channel + kLevelMargin, aimed + behind.Sum(2) + next);
    const Level& level = levels[static_cast<uint32_t>(place)];
    next = level.next;
    behind.Pass(level.error);
    *error = level.error;
    return level.bits;
  }
};

template <int Method>
void DiffuseLine256(DitherRecord& run, uint32_t order, const uint8_t* source, uint8_t* target,
                    size_t width) {
  constexpr size_t kBefore = 2 * kFilter<Method>.reach;
  ChannelWalk<Method> red, green, blue;
  const auto walk = [&](DitherBlock& block, size_t first, size_t count, Errors& errors) {
    const int32_t* const aimedRed = AimedAt<Method>(run, 0, first);
    const int32_t* const aimedGreen = AimedAt<Method>(run, 1, first);
    const int32_t* const aimedBlue = AimedAt<Method>(run, 2, first);
    int16_t* const redErrors = errors[0].data() + kBefore;
    int16_t* const greenErrors = errors[1].data() + kBefore;
    int16_t* const blueErrors = errors[2].data() + kBefore;
    auto r = red, g = green, b = blue;
    for (size_t x = 0; x < count; ++x) {
      const RGBQUAD pixel = block.pixels[x];
      const uint32_t index =
          r.Step(kRedLevels<Method>, pixel.rgbRed, aimedRed[x], redErrors + x) |
          g.Step(kGreenLevels<Method>, pixel.rgbGreen, aimedGreen[x], greenErrors + x) |
          b.Step(kBlueLevels<Method>, pixel.rgbBlue, aimedBlue[x], blueErrors + x);
      block.indexes[x] = static_cast<uint8_t>(index);
    }
    red = r, green = g, blue = b;
  };
  DiffuseBlocks<Method>(run, order, source, target, width, walk);
}

}  // namespace

DitherLineProc SelectDiffusionLine(const DitherRecord& run) {
  const auto byMethod = [&](auto&& lineOf) -> DitherLineProc {
    switch (run.Method) {
      case 1:
        return lineOf.template operator()<1>();
      case 2:
        return lineOf.template operator()<2>();
      case 3:
        return lineOf.template operator()<3>();
      case 4:
        return lineOf.template operator()<4>();
      case 5:
        return lineOf.template operator()<5>();
      default:
        return lineOf.template operator()<6>();
    }
  };
  if (run.PaletteKind == PALETTE_FIXED_256 && run.TargetCount == FixedPalette256.size()) {
    return byMethod([]<int Method>() -> DitherLineProc { return DiffuseLine256<Method>; });
  }
  return WithChoice(run, [&]<class Choice>(Choice*) {
    return byMethod([]<int Method>() -> DitherLineProc { return DiffuseLine<Method, Choice>; });
  });
}

}  // namespace vn
