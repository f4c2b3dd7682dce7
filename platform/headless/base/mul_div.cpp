// MulDiv: the product in 64 bits, the quotient rounded to the nearest whole number, halves away
// from 0.
#include <cstdint>
#include <cstdlib>

#include <vncore/platform/win32.h>

int MulDiv(int number, int numerator, int denominator) {
  if (denominator == 0) return -1;
  const int64_t product = int64_t{number} * numerator;
  const int64_t divisor = std::abs(int64_t{denominator});
  const int64_t rounded = (std::abs(product) + divisor / 2) / divisor;
  const int64_t quotient = (product < 0) != (denominator < 0) ? -rounded : rounded;
  return quotient > INT32_MAX || quotient < -INT32_MAX ? -1 : static_cast<int>(quotient);
}
