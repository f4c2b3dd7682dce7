// Grays of rows of every depth.
#include "color/gray_rows.h"

#include "color/gray_rows_avx2.h"
#include "color/palettes.h"
#include "kernel/pixel_format.h"
#include "kernel/vector.h"

namespace vn {
namespace {

template <int Bits>
void IndexGrays(const uint8_t* source, uint8_t* target, size_t width, const uint8_t* levels) {
  for (size_t x = 0; x < width; ++x)
    target[x] = levels[IndexReader<Bits>::Get(source, x)];
}

template <int Bits, uint32_t Order>
void ColorGrays(const uint8_t* source, uint8_t* target, size_t width, const uint8_t*) {
  for (size_t x = 0; x < width; ++x) {
    target[x] = static_cast<uint8_t>(GrayOf(ColorReader<Bits, Order>::Get(source, x)));
  }
}

#ifdef VNCORE_HAVE_AVX2
template <int Bits, uint32_t Order, GrayVectors* Vectors>
void ColorGraysByVectors(const uint8_t* source, uint8_t* target, size_t width, const uint8_t*) {
  const size_t done = Vectors(source, target, width);
  ColorGrays<Bits, Order>(source + done * (Bits / 8), target + done, width - done, nullptr);
}

template <int Bits, uint32_t Order>
constexpr GrayRow kVectorForm =
    ColorGraysByVectors<Bits, Order,
                        Bits == 24 ? (Order == ORDER_BGR ? Grays24BgrAvx2 : Grays24RgbAvx2)
                                   : (Order == ORDER_BGR ? Grays32BgrAvx2 : Grays32RgbAvx2)>;
#endif

template <int Bits, uint32_t Order>
GrayRow SelectColorGrays() {
  if constexpr (Bits == 16) {
    return ColorGrays<Bits, Order>;
  } else {
    return VNCORE_VECTOR_FORM((ColorGrays<Bits, Order>), (kVectorForm<Bits, Order>));
  }
}

// The depth that a row is read at.
int32_t ReadBits(int32_t bitsPerPixel) {
  return WithDepth(bitsPerPixel, [](auto) {}) ? bitsPerPixel : 32;
}

}  // namespace

GrayRow SelectGrayRow(int32_t bitsPerPixel, uint32_t order) {
  GrayRow row = nullptr;
  WithDepth(ReadBits(bitsPerPixel), [&](auto bits) {
    if constexpr (bits <= 8) {
      row = IndexGrays<bits>;
    } else if (order == ORDER_BGR) {
      row = SelectColorGrays<bits, ORDER_BGR>();
    } else {
      row = SelectColorGrays<bits, ORDER_RGB>();
    }
  });
  return row;
}

bool ReadGrayLevels(const BitmapHandle& bitmap, uint8_t* levels) {
  if (bitmap.BitsPerPixel >= 16) return true;
  RGBQUAD colors[256];
  const auto count = static_cast<uint32_t>(bitmap.ColorCount);
  const HPALETTE palette = ActivePalette(bitmap);
  if (!palette || count > 256 || Vn_GetPaletteEntries(palette, 0, count, colors) < count) {
    return false;
  }
  for (uint32_t i = 0; i < 256; ++i)
    levels[i] = i < count ? static_cast<uint8_t>(GrayOf(ColorOf(colors[i]))) : 0;
  return true;
}

bool HoldsGraySource(const BitmapHandle& bitmap) {
  const auto bits = static_cast<uint64_t>(ReadBits(bitmap.BitsPerPixel));
  return (bits * static_cast<uint32_t>(bitmap.Width) + 7) / 8 <= bitmap.BytesPerLine;
}

}  // namespace vn
