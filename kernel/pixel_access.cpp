// Single pixels by colour.
#include <vncore/vncore.h>
#include "color/color_match.h"
#include "kernel/guards.h"
#include "kernel/pixel_format.h"

namespace {

using namespace vn;

// The column whose byte holds a pixel at 1 and 4 bits. Kept as callers know it: 16-bit masks, so
// from column 65536 on the byte lies 65536 pixels further left.
template <int Bits>
uint32_t ByteColumn(uint32_t column) {
  if constexpr (Bits == 1) return column & 0xFFF8;
  if constexpr (Bits == 4) return column & 0xFFFE;
  return column;
}

// Bytes of a pixel that carry something: the fourth of 32 bits does not.
template <int Bits>
inline constexpr uint32_t kPixelBytes = Bits <= 8    ? 1
                                        : Bits == 16 ? 2
                                                     : 3;

template <int Bits>
bool ReadPixel(BitmapHandle* bitmap, uint32_t row, uint32_t column, uint8_t* bytes) {
  return Vn_GetBitmapRowCol(bitmap, bytes, row, ByteColumn<Bits>(column), kPixelBytes<Bits>) ==
         static_cast<int32_t>(kPixelBytes<Bits>);
}

// Pixel number within the byte that was read.
template <int Bits>
size_t Within(uint32_t column) {
  if constexpr (Bits <= 8) return column % (8 / Bits);
  return 0;
}

COLORREF RefOf(Rgb c) { return static_cast<COLORREF>(c.red | c.green << 8 | c.blue << 16); }

// The reader and writer of 24 bits serve 32 as well, since the fourth byte is left alone.
template <int Bits>
inline constexpr int kColorBits = Bits == 32 ? 24 : Bits;

template <int Bits>
COLORREF PixelColor(BitmapHandle* bitmap, uint32_t row, uint32_t column) {
  uint8_t bytes[3];
  // A failed read of a temporary file leaves no pixel to tell of.
  if (!ReadPixel<Bits>(bitmap, row, column, bytes)) return VN_NO_PIXEL;
  if constexpr (Bits <= 8) {
    const ColorForm colors(bitmap);
    const uint32_t index = IndexReader<Bits>::Get(bytes, Within<Bits>(column));
    return RefOf(ColorOf(bitmap->DibColors[index]));
  } else if (bitmap->ColorOrder == ORDER_RGB) {
    return RefOf(ColorReader<kColorBits<Bits>, ORDER_RGB>::Get(bytes, 0));
  } else {
    return RefOf(ColorReader<kColorBits<Bits>, ORDER_BGR>::Get(bytes, 0));
  }
}

template <int Bits>
uint32_t IndexOf(BitmapHandle* bitmap, COLORREF color) {
  constexpr uint32_t kColors = FullColorCount(Bits);
  if (color > 0xFFFFFF) return color & (kColors - 1);
  const ColorForm colors(bitmap);
  return ColorMatch(bitmap->DibColors, kColors, GetRValue(color), GetGValue(color),
                    GetBValue(color));
}

template <int Bits>
void SetPixelColor(BitmapHandle* bitmap, uint32_t row, uint32_t column, COLORREF color) {
  uint8_t bytes[3];
  if constexpr (Bits <= 8) {
    const uint32_t index = IndexOf<Bits>(bitmap, color);
    // The neighbours in the byte must be known before it is written.
    if (Bits < 8 && !ReadPixel<Bits>(bitmap, row, column, bytes)) return;
    PutIndex<Bits>(bytes, Within<Bits>(column), index);
  } else if (bitmap->ColorOrder == ORDER_RGB) {
    PutColor<kColorBits<Bits>, ORDER_RGB>(bytes, 0, ColorOf(color));
  } else {
    PutColor<kColorBits<Bits>, ORDER_BGR>(bytes, 0, ColorOf(color));
  }
  Vn_PutBitmapRowCol(bitmap, bytes, row, ByteColumn<Bits>(column), kPixelBytes<Bits>);
}

bool IsInside(const BitmapHandle& bitmap, int32_t row, int32_t column) {
  return row >= 0 && row < bitmap.Height && column >= 0 && column < bitmap.Width;
}

}  // namespace

COLORREF VN_CALL Vn_GetPixelColor(BitmapHandle* bitmap, int32_t row, int32_t column) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return VN_NO_PIXEL;
  if (!IsInside(*bitmap, row, column)) return VN_NO_PIXEL;
  const BitmapLock lock(bitmap);
  COLORREF color = VN_NO_PIXEL;
  WithDepth(bitmap->BitsPerPixel, [&](auto depth) {
    color = PixelColor<depth>(bitmap, static_cast<uint32_t>(row), static_cast<uint32_t>(column));
  });
  return color;
}

VnStatus VN_CALL Vn_PutPixelColor(BitmapHandle* bitmap, int32_t row, int32_t column,
                                  COLORREF color) {
  if (!bitmap || !(bitmap->Flags & FLAG_ALLOCATED)) return ERR_NO_BITMAP;
  // A region stays as it is when its bitmap loses rows.
  if (!IsInside(*bitmap, row, column) || !Vn_IsPtInBitmapRgn(bitmap, row, column)) {
    return ERR_EMPTY_BITMAP;
  }
  const BitmapLock lock(bitmap);
  WithDepth(bitmap->BitsPerPixel, [&](auto depth) {
    SetPixelColor<depth>(bitmap, static_cast<uint32_t>(row), static_cast<uint32_t>(column), color);
  });
  return OK;
}
