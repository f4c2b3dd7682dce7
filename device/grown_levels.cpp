#include "device/grown_levels.h"

#include <algorithm>
#include <cstring>

#include "device/spread_bits.h"

namespace vn {

GrownLevels::GrownLevels(const Stepper& step, uint32_t first, uint32_t columns, uint32_t last,
                         uint32_t pixels, uint32_t rows)
    : first_(first),
      columns_(columns),
      last_(last),
      pixels_(pixels),
      scaler_({8, step, 0, columns - first, pixels, pixels, true}, rows),
      shares_(pixels),
      nextShares_(pixels),
      spread_(columns),
      sets_(pixels),
      nextSets_(pixels) {
  if (!*this) return;
  ShareSteps steps(step);
  for (uint32_t i = 0; i < pixels; ++i, steps.Advance()) {
    shares_[i] = static_cast<uint8_t>(steps.Own());
    nextShares_[i] = static_cast<uint8_t>(steps.Next());
  }
}

void GrownLevels::Write(const uint8_t* bits, uint8_t* levels) const {
  uint8_t* const spread = spread_.data();
  SpreadBits(bits, 0, columns_, false, spread);
  scaler_.Scale(spread + first_, sets_.data());
  // The row of next columns, in its place.
  std::memmove(spread, spread + 1, std::min(last_, columns_ - 1));
  scaler_.Scale(spread + first_, nextSets_.data());
  const uint8_t *sets = sets_.data(), *nextSets = nextSets_.data();
  const uint8_t *shares = shares_.data(), *nextShares = nextShares_.data();
  const uint32_t pixels = pixels_;
  for (uint32_t i = 0; i < pixels; ++i) {
    const auto sum = static_cast<uint8_t>((sets[i] & shares[i]) + (nextSets[i] & nextShares[i]));
    levels[i] = static_cast<uint8_t>(sum | (sets[i] & nextSets[i]));
  }
}

}  // namespace vn
