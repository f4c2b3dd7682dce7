// Sine and cosine in integers, for everything that turns by an angle.
#ifndef VNCORE_GEOMETRY_FIXED_SINE_H
#define VNCORE_GEOMETRY_FIXED_SINE_H

#include <array>
#include <cstdint>

namespace vn {

// Fixed point with 14 fractional bits; angles in hundredths of a degree.
inline constexpr int32_t kFixedOne = 16384;

// Entry i is 16384 * sin(i / 100 degrees), rounded to the nearest integer, for 0 to 90 degrees.
extern const std::array<int32_t, 9001> kSineTable;

// Of an angle from 0 to 36000.
int32_t FixedSin(int32_t angle);
int32_t FixedCos(int32_t angle);

// The whole part of a fixed-point number, truncated toward zero, and what is left of it, with the
// number's sign.
constexpr int32_t Trunc14(int32_t value) { return value / kFixedOne; }
constexpr int32_t Remainder14(int32_t value) { return value % kFixedOne; }

}  // namespace vn

#endif
