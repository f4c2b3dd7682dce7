// Realisation of palettes.
#include "platform/headless/devices/system_palette.h"

#include <cstring>

#include "platform/headless/objects/static_colors.h"
#include "platform/headless/surfaces/device_colors.h"

namespace headless {
namespace {

uint64_t NextId() {
  static uint64_t last = 0;
  return ++last;
}

}  // namespace

SystemPalette::SystemPalette(int32_t reserved)
    : id_(NextId()),
      low_(static_cast<uint32_t>(reserved) / 2),
      high_(256 - low_),
      colors_(std::make_shared<ColorTable>(*FixedColors(8))) {
  for (uint32_t i = 0; i < low_; ++i) {
    colors_->entries[i] = QuadOf(RgbOf(kStaticColors[i]));
    colors_->entries[255 - i] = QuadOf(RgbOf(kStaticColors[kStaticColorCount - 1 - i]));
  }
}

// Colours that are there already are shared, the reserved ones first among equals at the low end.
int SystemPalette::FindShared(uint32_t rgb) const {
  for (uint32_t i = 0; i < 256; ++i) {
    if ((used_[i] || i < low_ || i >= high_) && !exclusive_[i] &&
        RgbOf(colors_->entries[i]) == rgb) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

int SystemPalette::FindFree() const {
  for (uint32_t i = low_; i < high_; ++i) {
    if (!used_[i]) return static_cast<int>(i);
  }
  return -1;
}

uint8_t SystemPalette::Place(const PALETTEENTRY& entry) {
  if (entry.peFlags & PC_EXPLICIT) return entry.peRed;  // the low word is the index itself
  const uint32_t rgb = RgbOf(entry);
  if (!(entry.peFlags & (PC_RESERVED | PC_NOCOLLAPSE))) {
    if (const int shared = FindShared(rgb); shared >= 0) return static_cast<uint8_t>(shared);
  }
  if (const int slot = FindFree(); slot >= 0) {
    const auto at = static_cast<size_t>(slot);
    colors_->entries[at] = QuadOf(rgb);
    used_.set(at);
    exclusive_.set(at, (entry.peFlags & PC_RESERVED) != 0);
    return static_cast<uint8_t>(slot);
  }
  return static_cast<uint8_t>(NearestEntry(*colors_, rgb));
}

UINT SystemPalette::Realize(Palette& palette, bool background) {
  if (!background) {
    used_.reset();
    exclusive_.reset();
  }
  const ColorTable before = *colors_;
  const bool held = Holds(palette);
  std::vector<uint8_t> mapping(palette.entries.size());
  UINT changed = 0;
  for (size_t i = 0; i < mapping.size(); ++i) {
    mapping[i] = Place(palette.entries[i]);
    const bool same = held && palette.mapping[i] == mapping[i] &&
                      RgbOf(before.entries[mapping[i]]) == RgbOf(colors_->entries[mapping[i]]);
    if (!same) ++changed;
  }
  palette.mapping = std::move(mapping);
  palette.realizedOn = id_;
  return changed;
}

}  // namespace headless
