#include "color/ordered_rows.h"

#include <algorithm>

#include "color/index_rows.h"
#include "color/ordered_rows_avx2.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// The index of pixel `x`, whose threshold is `t`.
template <int Bits>
uint32_t IndexOf(const uint8_t* pixels, size_t x, int32_t t) {
  if constexpr (Bits == 1) {
    return t < pixels[x];
  } else {
    const int32_t blue = pixels[4 * x], green = pixels[4 * x + 1], red = pixels[4 * x + 2];
    if constexpr (Bits == 4) {
      // Black, or one of the seven full colours at 9 to 15; no others of the palette.
      const auto bits = uint32_t{t < red} | uint32_t{t < green} << 1 | uint32_t{t < blue} << 2;
      return bits ? bits + 8 : 0;
    } else {
      // Channels are shifted by -16 to 15; 3, 3 and 2 of their bits count.
      const int32_t shift = (t >> 3) - 16;
      const auto level = [shift](int32_t channel) {
        return static_cast<uint32_t>(std::clamp(channel + shift, 0, 255));
      };
      return (level(red) & 0xE0) | level(green) >> 5 << 2 | level(blue) >> 6;
    }
  }
}

template <int Bits>
void OrderPlain(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target, size_t count) {
  WriteIndexes<Bits>(target, count,
                     [=](size_t x) { return IndexOf<Bits>(pixels, x, thresholds[x % 8]); });
}

#ifdef VNCORE_HAVE_AVX2
template <int Bits, OrderedVectors* Vectors>
void OrderByVectors(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                    size_t count) {
  const size_t done = Vectors(pixels, thresholds, target, count);
  OrderPlain<Bits>(pixels + done * (Bits == 1 ? 1 : 4), thresholds, target + done * Bits / 8,
                   count - done);
}
#endif

}  // namespace

OrderedRows::Loop OrderedRows::LoopTo(int32_t targetBits) {
  switch (targetBits) {
    case 1:
      return VNCORE_VECTOR_FORM(OrderPlain<1>, (OrderByVectors<1, Ordered1Avx2>));
    case 4:
      return VNCORE_VECTOR_FORM(OrderPlain<4>, (OrderByVectors<4, Ordered4Avx2>));
    default:
      return VNCORE_VECTOR_FORM(OrderPlain<8>, (OrderByVectors<8, Ordered8Avx2>));
  }
}

OrderedRows::OrderedRows(int32_t sourceBits, bool swap, const RGBQUAD* colors, int32_t targetBits)
    : sourceBits_(static_cast<size_t>(sourceBits)),
      targetBits_(static_cast<size_t>(targetBits)),
      colors_(colors),
      read_(SelectColorRow(sourceBits, 32, swap)),
      direct_(targetBits == 1 && sourceBits > 8),
      grays_(direct_ ? SelectGrayRow(sourceBits, swap ? ORDER_RGB : ORDER_BGR)
                     : SelectGrayRow(32, ORDER_BGR)),
      loop_(LoopTo(targetBits)) {}

void OrderedRows::Dither(const uint8_t* source, size_t first, const uint8_t* thresholds,
                         uint8_t* target, size_t width) const {
  constexpr size_t kBlock = 1024, kMostAhead = 7;  // blocks start at whole bytes
  alignas(32) uint8_t pixels[(kBlock + kMostAhead) * 4];
  alignas(32) uint8_t grays[kBlock];
  const size_t ahead = sourceBits_ < 8 ? first % 8 : 0;
  source += (first - ahead) * sourceBits_ / 8;
  for (size_t done = 0; done < width; done += kBlock) {
    const size_t count = std::min(kBlock, width - done);
    const uint8_t* from = source;
    if (!direct_) {
      read_(source, pixels, ahead + count, colors_);
      from = pixels + 4 * ahead;
    }
    if (targetBits_ == 1) {
      grays_(from, grays, count, nullptr);
      from = grays;
    }
    loop_(from, thresholds, target, count);
    source += kBlock * sourceBits_ / 8;
    target += kBlock * targetBits_ / 8;
  }
}

}  // namespace vn
