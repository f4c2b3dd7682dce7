// Nearest-pixel scaling of one row: one loop per pixel size over a source of positions.
#include "geometry/scale_row.h"

#include <cstring>

#include "kernel/pixel_format.h"
#include "kernel/stepper.h"

namespace vn {
namespace {

// The stepping rule as it stands: right for any arguments.
class CarrySteps {
 public:
  CarrySteps(uint32_t first, const Stepper& step) : position_(first), step_(step) {}
  uint32_t Position() const { return position_; }
  void Advance() { position_ += step_.Advance(); }
  // A position that is not above any of the next `count`.
  uint32_t LowestLast(uint32_t) const { return position_; }

 private:
  uint32_t position_;
  Stepper step_;
};

// The same positions in 32.32 fixed point, one addition per pixel. Start and step are rounded up,
// so pixel d lies less than (d + 1) / 2^32 too far; a fraction of k / divisor then stays below the
// next whole number as long as count * divisor does not exceed 2^32. Positions must stay in 32
// bits.
class FixedSteps {
 public:
  static bool Serves(const Stepper& step, uint32_t count) {
    return step.accumulator < step.divisor && step.remainder <= step.divisor &&
           uint64_t{count} * step.divisor <= uint64_t{1} << 32 &&
           (uint64_t{step.quotient} + 2) * count <= UINT32_MAX - 8;
  }
  FixedSteps(uint32_t first, const Stepper& step)
      : at_((uint64_t{first} << 32) + Fraction(step.accumulator, step.divisor)),
        step_((uint64_t{step.quotient} << 32) + Fraction(step.remainder, step.divisor)) {}
  uint32_t Position() const { return static_cast<uint32_t>(at_ >> 32); }
  void Advance() { at_ += step_; }
  uint32_t LowestLast(uint32_t count) const {
    return static_cast<uint32_t>((at_ + uint64_t{count - 1} * step_) >> 32);
  }

 private:
  static uint64_t Fraction(uint32_t part, uint32_t divisor) {
    return ((uint64_t{part} << 32) + divisor - 1) / divisor;
  }
  uint64_t at_;
  uint64_t step_;
};

// Bits are set, never cleared: the bytes behind `rowBytes` keep what they hold.
template <class Steps>
void ScaleBits(Steps steps, const uint8_t* source, uint8_t* destination, uint32_t count) {
  const auto next = [&] {
    const uint32_t bit = IndexReader<1>::Get(source, steps.Position());
    steps.Advance();
    return bit;
  };
  for (; count >= 8; count -= 8) {
    uint32_t byte = 0;
    for (int i = 0; i < 8; ++i)
      byte = byte << 1 | next();
    *destination++ |= static_cast<uint8_t>(byte);
  }
  for (uint32_t i = 0; i < count; ++i)
    *destination |= static_cast<uint8_t>(next() << (7 - i));
}

// Bytes are replaced whole; the low nibble behind an odd last pixel becomes 0.
template <class Steps>
void ScaleNibbles(Steps steps, const uint8_t* source, uint8_t* destination, uint32_t count) {
  const auto next = [&] {
    const uint32_t nibble = IndexReader<4>::Get(source, steps.Position());
    steps.Advance();
    return nibble;
  };
  for (; count >= 2; count -= 2) {
    const uint32_t high = next();
    *destination++ = static_cast<uint8_t>(high << 4 | next());
  }
  if (count) *destination = static_cast<uint8_t>(next() << 4);
}

template <size_t Bytes, class Steps>
void ScaleBytes(Steps steps, const uint8_t* source, uint8_t* destination, uint32_t count) {
  if (!count) return;
  if constexpr (Bytes == 3) {
    // Whole words as long as a further source pixel, and with it a further destination pixel,
    // lies behind: the fourth byte is overwritten by the next pixel.
    for (const uint32_t last = steps.LowestLast(count); steps.Position() < last; --count) {
      uint32_t word;
      std::memcpy(&word, source + size_t{steps.Position()} * 3, sizeof word);
      std::memcpy(destination, &word, sizeof word);
      destination += 3;
      steps.Advance();
    }
  }
  for (; count; --count) {
    // Through a register: in place the two pixels may be the same.
    uint8_t pixel[Bytes];
    std::memcpy(pixel, source + size_t{steps.Position()} * Bytes, Bytes);
    std::memcpy(destination, pixel, Bytes);
    destination += Bytes;
    steps.Advance();
  }
}

template <int Bits>
void ScaleDepth(uint32_t first, const Stepper& step, const uint8_t* source, uint8_t* destination,
                uint32_t count) {
  const auto scale = [&](auto steps) {
    if constexpr (Bits == 1) {
      ScaleBits(steps, source, destination, count);
    } else if constexpr (Bits == 4) {
      ScaleNibbles(steps, source, destination, count);
    } else {
      ScaleBytes<Bits / 8>(steps, source, destination, count);
    }
  };
  if (FixedSteps::Serves(step, count)) {
    scale(FixedSteps(first, step));
  } else {
    scale(CarrySteps(first, step));
  }
}

}  // namespace

void ScaleRow(int32_t bitsPerPixel, uint32_t rowBytes, uint32_t startPixel, uint32_t stepQuotient,
              uint32_t accumulator, uint32_t stepRemainder, const uint8_t* source,
              uint8_t* destination, uint32_t count, uint32_t divisor, int32_t expand) {
  Stepper step{stepQuotient, stepRemainder, divisor, accumulator};
  uint32_t first = 0;
  if (bitsPerPixel < 8) {
    // `source` is the byte that holds the first pixel.
    first = bitsPerPixel == 1 ? startPixel & 7 : startPixel & 1;
    if (expand) step.quotient = 0;
  }
  if (bitsPerPixel == 1 && rowBytes) std::memset(destination, 0, rowBytes);
  WithDepth(bitsPerPixel,
            [&](auto bits) { ScaleDepth<bits>(first, step, source, destination, count); });
}

}  // namespace vn
