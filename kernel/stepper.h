// Quotient-remainder stepping: whole steps and an accumulated fraction, with no division per step.
#ifndef VNCORE_KERNEL_STEPPER_H
#define VNCORE_KERNEL_STEPPER_H

#include <cstdint>

namespace vn {

// Spreads `total` over `divisor` steps. After d steps the sum of the advances is
// d * quotient + floor((start accumulator + d * remainder) / divisor). The accumulator and the
// remainder are below the divisor, or the remainder equals it (each step then carries).
struct Stepper {
  uint32_t quotient;
  uint32_t remainder;
  uint32_t divisor;
  uint32_t accumulator;

  static constexpr Stepper Dividing(uint32_t total, uint32_t divisor, uint32_t accumulator = 0) {
    return {total / divisor, total % divisor, divisor, accumulator};
  }

  constexpr bool WouldCarry() const { return accumulator + remainder >= divisor; }

  constexpr uint32_t Advance() {
    accumulator += remainder;
    if (accumulator < divisor) return quotient;
    accumulator -= divisor;
    return quotient + 1;
  }
};

}  // namespace vn

#endif
