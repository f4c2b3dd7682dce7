#include "color/ordered_rows.h"

#include <algorithm>
#include <type_traits>

#include "color/dither_choice.h"
#include "color/index_rows.h"
#include "color/ordered_rows_avx2.h"
#include "kernel/vector.h"

namespace vn {
namespace {

// The index of pixel `x`, whose threshold is `t`.
template <int Bits, OrderedPixels Pixels>
uint32_t IndexOf(const uint8_t* pixels, size_t x, int32_t t) {
  if constexpr (Bits == 1) {
    return t < pixels[x];
  } else {
    const uint8_t* const pixel = pixels + (Pixels == OrderedPixels::k32 ? 4 : 3) * x;
    constexpr size_t kRed = Pixels == OrderedPixels::k24Swapped ? 0 : 2;
    using Choice = std::conditional_t<Bits == 4, FixedChoice16, FixedChoice256>;
    return Choice::ChooseOrdered({pixel[kRed], pixel[1], pixel[2 - kRed]}, t);
  }
}

template <int Bits, OrderedPixels Pixels>
void OrderPlain(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target, size_t count) {
  WriteIndexes<Bits>(target, count,
                     [=](size_t x) { return IndexOf<Bits, Pixels>(pixels, x, thresholds[x % 8]); });
}

#ifdef VNCORE_HAVE_AVX2
template <int Bits, OrderedPixels Pixels>
void OrderByVectors(const uint8_t* pixels, const uint8_t* thresholds, uint8_t* target,
                    size_t count) {
  constexpr size_t kBytes = Bits == 1 ? 1 : Pixels == OrderedPixels::k32 ? 4 : 3;
  const size_t done =
      kOrderedVectorsAvx2[Bits / 4][static_cast<size_t>(Pixels)](pixels, thresholds, target, count);
  OrderPlain<Bits, Pixels>(pixels + done * kBytes, thresholds, target + done * Bits / 8,
                           count - done);
}
#endif

}  // namespace

OrderedRows::Loop OrderedRows::LoopTo(int32_t targetBits, OrderedPixels pixels) {
  const auto of = [&]<int Bits>() -> Loop {
    const auto form = [&]<OrderedPixels Pixels>() -> Loop {
      return VNCORE_VECTOR_FORM((OrderPlain<Bits, Pixels>), (OrderByVectors<Bits, Pixels>));
    };
    if (Bits == 1 || pixels == OrderedPixels::k32) {
      return form.template operator()<OrderedPixels::k32>();
    }
    return pixels == OrderedPixels::k24 ? form.template operator()<OrderedPixels::k24>()
                                        : form.template operator()<OrderedPixels::k24Swapped>();
  };
  if (targetBits == 1) return of.template operator()<1>();
  return targetBits == 4 ? of.template operator()<4>() : of.template operator()<8>();
}

// Pixels of 24 bits are taken as they lie, and for grays those of 16 and 32 bits, too.
OrderedRows::OrderedRows(int32_t sourceBits, bool swap, const RGBQUAD* colors, int32_t targetBits)
    : sourceBits_(static_cast<size_t>(sourceBits)),
      targetBits_(static_cast<size_t>(targetBits)),
      colors_(colors),
      direct_(sourceBits == 24 || (targetBits == 1 && sourceBits > 8)),
      read_(SelectColorRow(sourceBits, 32, swap)),
      grays_(direct_ ? SelectGrayRow(sourceBits, swap ? ORDER_RGB : ORDER_BGR)
                     : SelectGrayRow(32, ORDER_BGR)),
      loop_(LoopTo(targetBits, !direct_ ? OrderedPixels::k32
                               : swap   ? OrderedPixels::k24Swapped
                                        : OrderedPixels::k24)) {}

void OrderedRows::Dither(const uint8_t* source, size_t first, const uint8_t* thresholds,
                         uint8_t* target, size_t width) const {
  constexpr size_t kBlock = 1024, kMostAhead = 7;  // blocks start at whole bytes
  alignas(32) uint8_t pixels[(kBlock + kMostAhead) * 4];
  alignas(32) uint8_t grays[kBlock];
  const size_t ahead = sourceBits_ < 8 ? first % 8 : 0;
  source += (first - ahead) * sourceBits_ / 8;
  if (direct_ && targetBits_ != 1) {
    loop_(source, thresholds, target, width);
    return;
  }
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
