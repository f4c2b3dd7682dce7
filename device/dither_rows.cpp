// The 32 members, from two loops (ordered, diffusing) over the pixel readers and three targets. The
// fixed palettes are laid out so that an index needs no search, and so that each channel's error
// depends on that channel alone (on the gray for two colours).
#include "device/dither_rows.h"

#include <algorithm>
#include <array>

#include "color/fixed_palettes.h"
#include "color/threshold_matrices.h"
#include "kernel/pixel_format.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

constexpr size_t kPhases = 8;
using ThresholdRow = const uint8_t (&)[kPhases];

struct Quantized {
  uint32_t index;
  DiffusionCell error;  // colour wanted less palette colour
};

// Each target tells: Prepare(), what a pixel needs of its threshold; Ordered(), the index under
// that; Nearest(), the index without pattern, and its error.
template <int Bits>
struct Target;

template <>
struct Target<1> {
  static uint32_t Prepare(uint8_t threshold) { return threshold; }
  static uint32_t Ordered(Rgb c, uint32_t threshold) { return threshold < GrayOf(c); }
  static Quantized Nearest(Rgb c) {
    const uint32_t index = GrayOf(c) > 127;
    const int32_t level = index ? 255 : 0;
    return {index, {c.red - level, c.green - level, c.blue - level}};
  }
};

// Black and the seven full colours, which stand from 8 on; each channel is off or full.
template <>
struct Target<4> {
  static uint32_t IndexOf(uint32_t red, uint32_t green, uint32_t blue) {
    const uint32_t bits = red | green << 1 | blue << 2;
    return bits | ((bits + 7) & 8);
  }
  static uint32_t Prepare(uint8_t threshold) { return threshold; }
  static uint32_t Ordered(Rgb c, uint32_t threshold) {
    const auto t = static_cast<int32_t>(threshold);
    return IndexOf(t < c.red, t < c.green, t < c.blue);
  }
  static Quantized Nearest(Rgb c) {
    const auto error = [](int32_t v) { return v - (-(v >> 7) & 255); };
    return {IndexOf(static_cast<uint32_t>(c.red >> 7), static_cast<uint32_t>(c.green >> 7),
                    static_cast<uint32_t>(c.blue >> 7)),
            {error(c.red), error(c.green), error(c.blue)}};
  }
};

// Index bits of a channel in the 256-colour palette: levels of 3, 3 and 2 bits.
constexpr uint32_t RedBits(uint32_t v) { return v & 0xE0; }
constexpr uint32_t GreenBits(uint32_t v) { return v >> 3 & 0x1C; }
constexpr uint32_t BlueBits(uint32_t v) { return v >> 6; }

// What the 256-colour palette makes of one channel.
struct ChannelTables {
  // The pattern adds -16 to 15. Index bits by value plus shift plus 16: clamp and mask in one look.
  std::array<uint8_t, 256 + 31> shifted;
  // Value less level, by value.
  std::array<int16_t, 256> error;
};

constexpr ChannelTables MakeChannel(uint32_t (*bits)(uint32_t), BYTE RGBQUAD::*level) {
  ChannelTables tables{};
  for (int32_t i = 0; i < 256 + 31; ++i) {
    const auto value = static_cast<uint32_t>(std::clamp(i - 16, 0, 255));
    tables.shifted[static_cast<size_t>(i)] = static_cast<uint8_t>(bits(value));
  }
  for (uint32_t value = 0; value < 256; ++value) {
    const int32_t error = static_cast<int32_t>(value) - FixedPalette256[bits(value)].*level;
    tables.error[value] = static_cast<int16_t>(error);
  }
  return tables;
}

constexpr ChannelTables kRed = MakeChannel(RedBits, &RGBQUAD::rgbRed);
constexpr ChannelTables kGreen = MakeChannel(GreenBits, &RGBQUAD::rgbGreen);
constexpr ChannelTables kBlue = MakeChannel(BlueBits, &RGBQUAD::rgbBlue);

template <>
struct Target<8> {
  static uint32_t Prepare(uint8_t threshold) { return threshold >> 3; }
  static uint32_t Ordered(Rgb c, uint32_t shift) {
    return kRed.shifted[static_cast<uint32_t>(c.red) + shift] |
           kGreen.shifted[static_cast<uint32_t>(c.green) + shift] |
           kBlue.shifted[static_cast<uint32_t>(c.blue) + shift];
  }
  static Quantized Nearest(Rgb c) {
    const auto red = static_cast<uint32_t>(c.red);
    const auto green = static_cast<uint32_t>(c.green);
    const auto blue = static_cast<uint32_t>(c.blue);
    return {RedBits(red) | GreenBits(green) | BlueBits(blue),
            {kRed.error[red], kGreen.error[green], kBlue.error[blue]}};
  }
};

// `thresholds` is the matrix row, `phase` the column of the first pixel. Eight pixels fill whole
// bytes at every depth and bring the pattern round, so a group runs without a test.
template <int Bits, class Reader>
void OrderRow(uint8_t* destination, Reader read, size_t x, size_t count, ThresholdRow thresholds,
              uint32_t phase) {
  using To = Target<Bits>;
  uint32_t pattern[kPhases];
  for (uint32_t i = 0; i < kPhases; ++i)
    pattern[i] = To::Prepare(thresholds[(phase + i) & 7]);
  for (; count >= kPhases; count -= kPhases, x += kPhases, destination += Bits) {
    PixelWriter<Bits> out(destination);
#pragma GCC unroll 8
    for (size_t i = 0; i < kPhases; ++i)
      out.Put(To::Ordered(read(x + i), pattern[i]));
  }
  PixelWriter<Bits> out(destination);
  for (size_t i = 0; i < count; ++i)
    out.Put(To::Ordered(read(x + i), pattern[i]));
  out.Finish();
}

DiffusionCell operator+(const DiffusionCell& a, const DiffusionCell& b) {
  return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}
DiffusionCell operator*(int32_t weight, const DiffusionCell& a) {
  return {weight * a.red, weight * a.green, weight * a.blue};
}

inline int32_t Corrected(int32_t value, int32_t sixteenths) {
  return std::min(std::max(value + sixteenths / 16, 0), 255);
}

// Floyd and Steinberg's filter: 7/16 to the right; 3/16, 5/16 and 1/16 to the row below, whose sums
// take the cells that this row has used up. Errors stay in registers until their cell is complete.
// What would fall off either side of the row is dropped.
template <int Bits, class Reader>
void DiffuseRow(uint8_t* destination, Reader read, size_t first, size_t count,
                DiffusionCell* cells) {
  PixelWriter<Bits> out(destination);
  const auto quantize = [&](size_t i, const DiffusionCell& sums) {
    const Rgb wanted = read(first + i);
    const Quantized result =
        Target<Bits>::Nearest({Corrected(wanted.red, sums.red), Corrected(wanted.green, sums.green),
                               Corrected(wanted.blue, sums.blue)});
    out.Put(result.index);
    return result.error;
  };
  DiffusionCell error = quantize(0, cells[0]);
  DiffusionCell older{};
  for (size_t i = 1; i < count; ++i) {
    const DiffusionCell newer = quantize(i, 7 * error + cells[i]);
    cells[i - 1] = older + 5 * error + 3 * newer;
    older = error;
    error = newer;
  }
  cells[count - 1] = older + 5 * error;
  out.Finish();
}

// Calls `use` with the row's reader: the one choice that a row makes for itself.
template <int Bits, class Use>
void WithReader(const uint8_t* source, const BitmapHandle* bitmap, const RGBQUAD* colors, Use use) {
  if constexpr (Bits > 8) {
    if (bitmap->ColorOrder == ORDER_BGR) {
      use(PixelReader<Bits, ORDER_BGR>{source, nullptr});
    } else {
      use(PixelReader<Bits, ORDER_RGB>{source, nullptr});
    }
  } else {
    use(PixelReader<Bits>{source, colors});
  }
}

template <int From, int To, const uint8_t (&Matrix)[8][8]>
void Ordered(uint8_t* destination, const uint8_t* source, const BitmapHandle* bitmap, int32_t first,
             int32_t last, uint32_t patternX, int32_t patternY, DiffusionCell*,
             const RGBQUAD* colors) {
  if (last <= first) return;
  WithReader<From>(source, bitmap, colors, [=](auto reader) {
    OrderRow<To>(destination, reader, static_cast<size_t>(first), static_cast<size_t>(last - first),
                 Matrix[patternY & 7], patternX);
  });
}

template <int From, int To>
void Diffused(uint8_t* destination, const uint8_t* source, const BitmapHandle* bitmap,
              int32_t first, int32_t last, uint32_t, int32_t, DiffusionCell* errors,
              const RGBQUAD* colors) {
  if (last <= first) return;
  WithReader<From>(source, bitmap, colors, [=](auto reader) {
    DiffuseRow<To>(destination, reader, static_cast<size_t>(first),
                   static_cast<size_t>(last - first), errors);
  });
}

template <int From, int To>
DitherRow Member(uint32_t mode) {
  if (!(mode & MODE_ORDERED_DITHER)) return Diffused<From, To>;
  if constexpr (To == 1) {
    if (mode & MODE_CLUSTERED_MATRIX) return Ordered<From, To, ClusteredMatrix>;
  }
  return Ordered<From, To, OrderedMatrix>;
}

}  // namespace

DitherRow SelectDitherRow(int32_t sourceBits, int32_t destinationBits) {
  const uint32_t mode = CurrentThreadSettings().DisplayMode;
  DitherRow member = nullptr;
  WithDepth(sourceBits, [&](auto from) {
    if constexpr (from >= 4) {
      if (destinationBits == 1) member = Member<from, 1>(mode);
      if (destinationBits == 4) member = Member<from, 4>(mode);
    }
    if (destinationBits == 8) member = Member<from, 8>(mode);
  });
  return member;
}

}  // namespace vn
