#include "geometry/fixed_sine.h"

#include <cstddef>

namespace vn {
namespace {

// The Taylor series, on angles of up to an eighth of a turn: ten terms leave less than 1e-17, and
// no value of the table lies nearer than 1e-6 to the middle between two integers.
constexpr double Series(double x, double term, int power) {
  double sum = term;
  for (int n = power + 1; n < power + 20; n += 2) {
    term *= -x * x / (static_cast<double>(n) * (n + 1));
    sum += term;
  }
  return sum;
}

constexpr double kRadians = 3.14159265358979323846 / 18000;

constexpr int32_t Entry(int hundredths) {
  const double sine = hundredths <= 4500 ? Series(hundredths * kRadians, hundredths * kRadians, 1)
                                         : Series((9000 - hundredths) * kRadians, 1, 0);
  return static_cast<int32_t>(kFixedOne * sine + 0.5);
}

constexpr std::array<int32_t, 9001> MakeTable() {
  std::array<int32_t, 9001> table{};
  for (int i = 0; i <= 9000; ++i)
    table[static_cast<size_t>(i)] = Entry(i);
  return table;
}

int32_t At(int32_t index) { return kSineTable[static_cast<size_t>(index)]; }

}  // namespace

constexpr std::array<int32_t, 9001> kSineTable = MakeTable();

int32_t FixedSin(int32_t angle) {
  if (angle <= 9000) return At(angle);
  if (angle <= 18000) return At(18000 - angle);
  if (angle <= 27000) return -At(angle - 18000);
  return -At(36000 - angle);
}

int32_t FixedCos(int32_t angle) {
  if (angle <= 9000) return At(9000 - angle);
  if (angle <= 18000) return -At(angle - 9000);
  if (angle <= 27000) return -At(27000 - angle);
  return At(angle - 27000);
}

}  // namespace vn
