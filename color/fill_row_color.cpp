// A row of one colour at a bitmap's depth.
#include <algorithm>
#include <cstring>

#include "color/color_match.h"
#include "color/palettes.h"
#include "kernel/pixel_format.h"

namespace vn {
namespace {

// Repeats the pattern of `unit` bytes at the start of `row` over `bytes` bytes, by doubling.
void RepeatPattern(uint8_t* row, size_t unit, size_t bytes) {
  for (size_t done = unit; done < bytes; done *= 2) {
    std::memcpy(row + done, row, std::min(done, bytes - done));
  }
}

template <int Bits>
void FillColors(uint8_t* row, size_t width, Rgb color, uint32_t order) {
  if (width == 0) return;
  if (order == ORDER_BGR) {
    PutColor<Bits, ORDER_BGR>(row, 0, color);
  } else {
    PutColor<Bits, ORDER_RGB>(row, 0, color);
  }
  RepeatPattern(row, Bits / 8, width * (Bits / 8));
}

}  // namespace

int32_t FillRowColor(BitmapHandle* bitmap, COLORREF color, uint8_t* row, uint32_t width) {
  const size_t pixels = width;
  const auto nearest = [&] { return GetNearestPaletteIndex(ActivePalette(*bitmap), color); };
  const Rgb channels = ColorOf(color);
  switch (bitmap->BitsPerPixel) {
    case 1:
      std::memset(row, nearest() ? 0xFF : 0, (pixels + 7) / 8);
      break;
    case 4:
      std::memset(row, static_cast<int>((nearest() & 15) * 0x11), (pixels + 1) / 2);
      break;
    case 8:
      std::memset(row, static_cast<int>(nearest() & 0xFF), pixels);
      break;
    case 16:
      FillColors<16>(row, pixels, channels, bitmap->ColorOrder);
      break;
    case 24:
      FillColors<24>(row, pixels, channels, bitmap->ColorOrder);
      break;
    default:
      FillColors<32>(row, pixels, channels, bitmap->ColorOrder);
      break;
  }
  return 1;
}

}  // namespace vn
