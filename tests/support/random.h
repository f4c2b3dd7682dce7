// A small generator of the tests' own, so that a case is the same on every machine.
#ifndef VNCORE_TESTS_SUPPORT_RANDOM_H
#define VNCORE_TESTS_SUPPORT_RANDOM_H

#include <cstddef>
#include <cstdint>

namespace vn::test {

// SplitMix64 (Steele, Lea, Flood: Fast Splittable Pseudorandom Number Generators, 2014).
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}
  uint64_t Next() {
    uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
    z = (z ^ z >> 27) * 0x94D049BB133111EBu;
    return z ^ z >> 31;
  }
  // From `low` to `high`, both included.
  int32_t Between(int32_t low, int32_t high) {
    const auto span = static_cast<uint64_t>(static_cast<int64_t>(high) - low + 1);
    return static_cast<int32_t>(low + static_cast<int64_t>(Next() % span));
  }
  template <class T, size_t N>
  T OneOf(const T (&values)[N]) {
    return values[Next() % N];
  }
  bool Chance(int32_t oneIn) { return Between(1, oneIn) == 1; }
  void Fill(void* bytes, size_t count) {
    auto* at = static_cast<uint8_t*>(bytes);
    for (size_t i = 0; i < count; ++i)
      at[i] = static_cast<uint8_t>(Next());
  }

 private:
  uint64_t state_;
};

}  // namespace vn::test

#endif
