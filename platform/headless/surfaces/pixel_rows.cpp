// Rows of pixels of any layout, to and from one word a pixel.
#include "platform/headless/surfaces/pixel_rows.h"

#include <bit>
#include <cstring>

namespace headless {
namespace {

template <class Word>
void LoadWords(const uint8_t* row, int32_t x, int32_t count, uint32_t* pixels) {
  row += static_cast<size_t>(x) * sizeof(Word);
  for (int32_t i = 0; i < count; ++i) {
    Word word;
    std::memcpy(&word, row + static_cast<size_t>(i) * sizeof word, sizeof word);
    pixels[i] = word;
  }
}

template <class Word>
void StoreWords(uint8_t* row, int32_t x, int32_t count, const uint32_t* pixels) {
  row += static_cast<size_t>(x) * sizeof(Word);
  for (int32_t i = 0; i < count; ++i) {
    const auto word = static_cast<Word>(pixels[i]);
    std::memcpy(row + static_cast<size_t>(i) * sizeof word, &word, sizeof word);
  }
}

void Load24(const uint8_t* row, int32_t x, int32_t count, uint32_t* pixels) {
  const uint8_t* at = row + static_cast<size_t>(x) * 3;
  for (int32_t i = 0; i < count; ++i, at += 3) {
    pixels[i] = static_cast<uint32_t>(at[2]) << 16 | static_cast<uint32_t>(at[1]) << 8 | at[0];
  }
}

void Store24(uint8_t* row, int32_t x, int32_t count, const uint32_t* pixels) {
  uint8_t* at = row + static_cast<size_t>(x) * 3;
  for (int32_t i = 0; i < count; ++i, at += 3) {
    at[0] = static_cast<uint8_t>(pixels[i]);
    at[1] = static_cast<uint8_t>(pixels[i] >> 8);
    at[2] = static_cast<uint8_t>(pixels[i] >> 16);
  }
}

// 1 and 4 bits: pixel i of the run is bits `shift` and up of byte `at`.
template <uint32_t Bits>
void LoadPacked(const uint8_t* row, int32_t x, int32_t count, uint32_t* pixels) {
  constexpr uint32_t kPerByte = 8 / Bits, kMask = (1u << Bits) - 1;
  for (int32_t i = 0; i < count; ++i) {
    const auto column = static_cast<uint32_t>(x + i);
    pixels[i] = row[column / kPerByte] >> (~column % kPerByte * Bits) & kMask;
  }
}

template <uint32_t Bits>
void StorePacked(uint8_t* row, int32_t x, int32_t count, const uint32_t* pixels) {
  constexpr uint32_t kPerByte = 8 / Bits, kMask = (1u << Bits) - 1;
  int32_t i = 0;
  while (i < count) {
    const auto column = static_cast<uint32_t>(x + i);
    uint8_t& byte = row[column / kPerByte];
    uint32_t value = byte;
    for (uint32_t at = column % kPerByte; at < kPerByte && i < count; ++at, ++i) {
      const uint32_t shift = (kPerByte - 1 - at) * Bits;
      value = (value & ~(kMask << shift)) | (pixels[i] & kMask) << shift;
    }
    byte = static_cast<uint8_t>(value);
  }
}

// One channel of a layout with arbitrary fields.
struct Field {
  explicit Field(uint32_t mask)
      : shift(mask ? static_cast<uint32_t>(std::countr_zero(mask)) : 0),
        width(static_cast<uint32_t>(std::popcount(mask))) {}

  uint32_t Widen(uint32_t pixel) const {
    if (width == 0) return 0;
    if (width >= 8) return pixel >> (shift + width - 8) & 0xFF;
    const uint32_t value = pixel >> shift & ((1u << width) - 1);
    uint32_t wide = value << (8 - width);
    for (uint32_t filled = width; filled < 8; filled += filled)
      wide |= wide >> filled;
    return wide;
  }
  uint32_t Narrow(uint32_t channel) const {
    return width >= 8 ? channel << (shift + width - 8) : channel >> (8 - width) << shift;
  }

  uint32_t shift, width;
};

constexpr PixelLayout k555 = LayoutOf(16);

bool HoldsRgb(const PixelLayout& layout) {
  return layout.red == 0xFF0000 && layout.green == 0x00FF00 && layout.blue == 0x0000FF;
}

}  // namespace

void LoadPixels(const uint8_t* row, uint32_t bits, int32_t x, int32_t count, uint32_t* pixels) {
  switch (bits) {
    case 1:
      return LoadPacked<1>(row, x, count, pixels);
    case 4:
      return LoadPacked<4>(row, x, count, pixels);
    case 8:
      return LoadWords<uint8_t>(row, x, count, pixels);
    case 16:
      return LoadWords<uint16_t>(row, x, count, pixels);
    case 24:
      return Load24(row, x, count, pixels);
    default:
      return LoadWords<uint32_t>(row, x, count, pixels);
  }
}

void StorePixels(uint8_t* row, uint32_t bits, int32_t x, int32_t count, const uint32_t* pixels) {
  switch (bits) {
    case 1:
      return StorePacked<1>(row, x, count, pixels);
    case 4:
      return StorePacked<4>(row, x, count, pixels);
    case 8:
      return StoreWords<uint8_t>(row, x, count, pixels);
    case 16:
      return StoreWords<uint16_t>(row, x, count, pixels);
    case 24:
      return Store24(row, x, count, pixels);
    default:
      return StoreWords<uint32_t>(row, x, count, pixels);
  }
}

void PixelsToRgb(const PixelLayout& layout, int32_t count, uint32_t* pixels) {
  if (HoldsRgb(layout)) {
    if (layout.bits == 32) {  // the top byte is not a colour's
      for (int32_t i = 0; i < count; ++i)
        pixels[i] &= 0xFFFFFF;
    }
    return;
  }
  if (layout == k555) {
    for (int32_t i = 0; i < count; ++i) {
      const uint32_t p = pixels[i];
      const uint32_t wide = (p & 0x7C00) << 9 | (p & 0x03E0) << 6 | (p & 0x001F) << 3;
      pixels[i] = wide | (wide >> 5 & 0x070707);
    }
    return;
  }
  const Field red(layout.red), green(layout.green), blue(layout.blue);
  for (int32_t i = 0; i < count; ++i) {
    const uint32_t p = pixels[i];
    pixels[i] = red.Widen(p) << 16 | green.Widen(p) << 8 | blue.Widen(p);
  }
}

void RgbToPixels(const PixelLayout& layout, int32_t count, uint32_t* pixels) {
  if (HoldsRgb(layout)) return;
  if (layout == k555) {
    for (int32_t i = 0; i < count; ++i) {
      const uint32_t rgb = pixels[i];
      pixels[i] = (rgb >> 9 & 0x7C00) | (rgb >> 6 & 0x03E0) | (rgb >> 3 & 0x001F);
    }
    return;
  }
  const Field red(layout.red), green(layout.green), blue(layout.blue);
  for (int32_t i = 0; i < count; ++i) {
    const uint32_t rgb = pixels[i];
    pixels[i] =
        red.Narrow(rgb >> 16 & 0xFF) | green.Narrow(rgb >> 8 & 0xFF) | blue.Narrow(rgb & 0xFF);
  }
}

}  // namespace headless
