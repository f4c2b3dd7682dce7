// Pixels in memory: what contexts draw on and what pictures are read from.
#ifndef VNCORE_PLATFORM_HEADLESS_SURFACE_H
#define VNCORE_PLATFORM_HEADLESS_SURFACE_H

#include <array>
#include <cstddef>
#include <memory>

#include <vncore/platform/win32.h>

namespace headless {

// How a pixel lies in its row. Up to 8 bits a pixel is an index, the leftmost in the high bits of
// a byte, and the masks are 0; from 16 bits on it is a little-endian word with a field per channel.
struct PixelLayout {
  uint32_t bits = 0;
  uint32_t red = 0, green = 0, blue = 0;

  bool indexed() const { return bits <= 8; }
  bool operator==(const PixelLayout&) const = default;
};

// The layout of a depth where nothing else is told: 5-5-5 for 16 bits, blue first for 24 and 32.
constexpr PixelLayout LayoutOf(uint32_t bits) {
  if (bits <= 8) return {bits, 0, 0, 0};
  if (bits == 16) return {bits, 0x7C00, 0x03E0, 0x001F};
  return {bits, 0xFF0000, 0x00FF00, 0x0000FF};
}

// What index values show. Entries from `count` on are black.
struct ColorTable {
  std::array<RGBQUAD, 256> entries{};
  uint32_t count = 0;
};

struct Surface {
  uint8_t* top = nullptr;  // first byte of the uppermost row
  ptrdiff_t pitch = 0;     // bytes from a row to the one below; negative in a bottom-up DIB
  int32_t width = 0, height = 0;
  PixelLayout layout;
  // Up to 8 bits. Null for the one kind that has no colours of its own, the monochrome bitmap: in
  // it 0 and 1 stand for the text and background colour of whatever it meets.
  std::shared_ptr<ColorTable> colors;

  uint8_t* Row(int32_t y) const { return top + pitch * y; }
  bool monochrome() const { return layout.bits == 1 && !colors; }
};

// Bytes of a row that is padded to 4 bytes.
constexpr uint64_t RowBytes(uint64_t width, uint32_t bits) { return (width * bits + 31) / 32 * 4; }

constexpr uint32_t RgbOf(const RGBQUAD& color) {
  return static_cast<uint32_t>(color.rgbRed) << 16 | static_cast<uint32_t>(color.rgbGreen) << 8 |
         color.rgbBlue;
}
constexpr uint32_t RgbOf(const PALETTEENTRY& color) {
  return static_cast<uint32_t>(color.peRed) << 16 | static_cast<uint32_t>(color.peGreen) << 8 |
         color.peBlue;
}
// A COLORREF the other way round: red on top, as in the pixels of true-colour surfaces.
constexpr uint32_t RgbOf(COLORREF color) {
  return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}
constexpr COLORREF ColorRefOf(uint32_t rgb) { return RgbOf(static_cast<COLORREF>(rgb)); }
constexpr RGBQUAD QuadOf(uint32_t rgb) {
  return {static_cast<BYTE>(rgb), static_cast<BYTE>(rgb >> 8), static_cast<BYTE>(rgb >> 16), 0};
}

// Entry nearest to the colour by squared distance, the first of several; an exact one ends the
// search.
uint32_t NearestEntry(const ColorTable& table, uint32_t rgb);

}  // namespace headless

#endif
