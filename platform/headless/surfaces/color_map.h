// Conversion of pixel values from one image to those of another.
#ifndef VNCORE_PLATFORM_HEADLESS_COLOR_MAP_H
#define VNCORE_PLATFORM_HEADLESS_COLOR_MAP_H

#include <array>

#include "platform/headless/surfaces/surface.h"

namespace headless {

// What 0 and 1 of a monochrome bitmap stand for (0xRRGGBB).
struct MonochromeColors {
  uint32_t text = 0x000000;
  uint32_t background = 0xFFFFFF;
};

// A pixel value for each that a source of up to 8 bits can hold.
class PixelTable {
 public:
  PixelTable() {}  // without values: most maps never look at theirs
  PixelTable(const std::array<uint32_t, 256>& values, const PixelLayout& source);

  const std::array<uint32_t, 256>& values() const { return values_; }
  uint32_t bits() const { return bits_; }  // of the source, 0 for none
  bool keepsAll() const { return keepsAll_; }

 private:
  std::array<uint32_t, 256> values_;
  uint32_t bits_ = 0;
  bool keepsAll_ = false;
};

// Up to 8 source bits it is a table; above, the value is taken apart. Set up once per drawing call:
// where both sides are the same it costs nothing, and the last table that needed a search is kept,
// so that a picture that comes in bands searches once.
class ColorMap {
 public:
  // Values of `source`, whose colours are `colors` (up to 8 bits), to values of `target`.
  ColorMap(const PixelLayout& source, const ColorTable* colors, const Surface& target,
           const MonochromeColors& monochrome);
  // A table that is known, and outlives the map.
  ColorMap(const PixelLayout& source, const PixelTable& table, const Surface& target);
  ColorMap(const ColorMap&) = delete;
  ColorMap& operator=(const ColorMap&) = delete;

  // Values are the same on both sides.
  bool identity() const { return identity_; }
  // Values of the target, for up to 8 source bits.
  const std::array<uint32_t, 256>& table() const { return table_->values(); }
  // Converts values in place.
  void Apply(int32_t count, uint32_t* pixels) const;

 private:
  PixelLayout source_;
  const Surface& target_;
  uint32_t backgroundPixel_ = 0;  // source value that is 1 in a monochrome target
  bool identity_ = false;
  PixelTable own_;
  const PixelTable* table_ = nullptr;
};

// The value in `target` that shows a colour best.
uint32_t PixelOf(uint32_t rgb, const Surface& target, const MonochromeColors& monochrome);

// The colour that a value of `surface` shows; black and white for a monochrome one.
uint32_t ColorOf(uint32_t pixel, const Surface& surface);

}  // namespace headless

#endif
