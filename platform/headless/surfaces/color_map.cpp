// Conversion of pixel values from one image to those of another.
#include "platform/headless/surfaces/color_map.h"

#include <bitset>
#include <cstring>

#include "platform/headless/surfaces/pixel_rows.h"

namespace headless {
namespace {

bool SameColors(const ColorTable& a, const ColorTable& b) {
  return a.count == b.count &&
         std::memcmp(a.entries.data(), b.entries.data(), a.count * sizeof(RGBQUAD)) == 0;
}

// The nearest entries of one table in another, as found last. Guarded by the lock of every call.
const std::array<uint32_t, 256>& NearestEntries(const ColorTable& from, const ColorTable& to) {
  static ColorTable lastFrom, lastTo;
  static std::array<uint32_t, 256> nearest;
  if (!SameColors(lastFrom, from) || !SameColors(lastTo, to)) {
    for (uint32_t i = 0; i < from.count; ++i) {
      nearest[i] = NearestEntry(to, RgbOf(from.entries[i]));
    }
    lastFrom = from;
    lastTo = to;
  }
  return nearest;
}

// Nearest entries for colours of which there are too many to search for each. As real GDI has it, a
// colour takes the entry nearest to the centre of its cell, a cell being the colours that agree in
// the upper five bits of each channel. What is found stays as long as the table does.
class CellMatcher {
 public:
  void Start(const ColorTable& table) {
    if (SameColors(table_, table)) return;
    table_ = table;
    known_.reset();
  }
  uint32_t Match(uint32_t rgb) {
    const uint32_t cell = (rgb >> 9 & 0x7C00) | (rgb >> 6 & 0x03E0) | (rgb >> 3 & 0x001F);
    if (!known_[cell]) {
      known_.set(cell);
      entry_[cell] = static_cast<uint8_t>(NearestEntry(table_, (rgb & 0xF8F8F8) | 0x040404));
    }
    return entry_[cell];
  }

 private:
  ColorTable table_;
  std::bitset<32768> known_;
  uint8_t entry_[32768];
};

// One for all calls, which run one at a time.
CellMatcher& Cells() {
  static CellMatcher cells;
  return cells;
}

}  // namespace

uint32_t PixelOf(uint32_t rgb, const Surface& target, const MonochromeColors& monochrome) {
  if (target.monochrome()) return rgb == monochrome.background ? 1 : 0;
  if (target.layout.indexed()) return NearestEntry(*target.colors, rgb);
  RgbToPixels(target.layout, 1, &rgb);
  return rgb;
}

uint32_t ColorOf(uint32_t pixel, const Surface& surface) {
  if (surface.monochrome()) return pixel ? 0xFFFFFF : 0;
  if (surface.layout.indexed()) return RgbOf(surface.colors->entries[pixel]);
  PixelsToRgb(surface.layout, 1, &pixel);
  return pixel;
}

PixelTable::PixelTable(const std::array<uint32_t, 256>& values, const PixelLayout& source)
    : values_(values), bits_(source.bits), keepsAll_(true) {
  for (uint32_t i = 0; keepsAll_ && i < 1u << bits_; ++i)
    keepsAll_ = values_[i] == i;
}

ColorMap::ColorMap(const PixelLayout& source, const ColorTable* colors, const Surface& target,
                   const MonochromeColors& monochrome)
    : source_(source), target_(target) {
  if (!source.indexed()) {
    identity_ = source == target.layout;
    backgroundPixel_ = monochrome.background;
    RgbToPixels(source, 1, &backgroundPixel_);
    if (target.layout.bits == 8) Cells().Start(*target.colors);
    return;
  }
  std::array<uint32_t, 256> values{};
  if (target.monochrome()) {
    values[NearestEntry(*colors, monochrome.background)] = 1;
  } else if (target.layout.indexed() && !SameColors(*colors, *target.colors)) {
    values = NearestEntries(*colors, *target.colors);
  } else {
    for (uint32_t i = 0; i < colors->count; ++i) {
      values[i] = target.layout.indexed() ? i : RgbOf(colors->entries[i]);
    }
    if (!target.layout.indexed())
      RgbToPixels(target.layout, static_cast<int32_t>(colors->count), values.data());
  }
  own_ = PixelTable(values, source);
  table_ = &own_;
  identity_ = source == target.layout && table_->keepsAll();
}

ColorMap::ColorMap(const PixelLayout& source, const PixelTable& table, const Surface& target)
    : source_(source),
      target_(target),
      identity_(source == target.layout && table.keepsAll()),
      table_(&table) {}

void ColorMap::Apply(int32_t count, uint32_t* pixels) const {
  if (identity_) return;
  const auto each = [&](auto convert) {
    for (int32_t i = 0; i < count; ++i)
      pixels[i] = convert(pixels[i]);
  };
  if (source_.indexed()) return each([&values = table()](uint32_t value) { return values[value]; });

  if (target_.monochrome()) return each([&](uint32_t value) { return value == backgroundPixel_; });
  PixelsToRgb(source_, count, pixels);
  if (!target_.layout.indexed()) return RgbToPixels(target_.layout, count, pixels);
  if (target_.layout.bits == 8) {
    return each([&cells = Cells()](uint32_t rgb) { return cells.Match(rgb); });
  }
  each([&](uint32_t rgb) { return NearestEntry(*target_.colors, rgb); });
}

}  // namespace headless
