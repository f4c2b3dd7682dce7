// The 32 members: the ordered ones from the loops that line dithering has, too, and the diffusing
// ones from one over the pixel readers and three targets.
#include "device/dither_rows.h"

#include "color/ordered_rows.h"
#include "color/threshold_matrices.h"
#include "device/dither_targets.h"
#include "kernel/pixel_format.h"
#include "kernel/thread_settings.h"

namespace vn {
namespace {

DiffusionCell operator+(const DiffusionCell& a, const DiffusionCell& b) {
  return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}
DiffusionCell operator*(int32_t weight, const DiffusionCell& a) {
  return {weight * a.red, weight * a.green, weight * a.blue};
}

// Floyd and Steinberg's filter: 7/16 to the right; 3/16, 5/16 and 1/16 to the row below, whose sums
// take the cells that this row has used up. Errors stay in registers until their cell is complete.
// What would fall off either side of the row is dropped.
template <int Bits, class Reader>
void DiffuseRow(uint8_t* destination, Reader read, size_t first, size_t count,
                DiffusionCell* cells) {
  PixelWriter<Bits> out(destination);
  const auto quantize = [&](size_t i, const DiffusionCell& sums) {
    const Rgb c = read(first + i);
    const Quantized result = Target<Bits>::Nearest(
        {Raised(c.red, sums.red), Raised(c.green, sums.green), Raised(c.blue, sums.blue)});
    out.Put(result.index);
    return result;
  };
  Quantized last = quantize(0, cells[0]);
  DiffusionCell older{};
  for (size_t i = 1; i < count; ++i) {
    const Quantized next = quantize(i, last.right + cells[i]);
    cells[i - 1] = older + 5 * last.error + 3 * next.error;
    older = last.error;
    last = next;
  }
  cells[count - 1] = older + 5 * last.error;
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
  uint8_t thresholds[8];
  for (uint32_t i = 0; i < 8; ++i)
    thresholds[i] = Matrix[patternY & 7][(patternX + i) & 7];
  OrderedRows(From, From > 8 && bitmap->ColorOrder != ORDER_BGR, colors, To)
      .Dither(source, static_cast<size_t>(first), thresholds, destination,
              static_cast<size_t>(last - first));
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
