// Bytes as a list of decisions: what a fuzz target does, and with which numbers.
//
// An input never runs out: behind its end every decision is 0. A byte more or less changes what is
// behind it, but nearly every string of bytes is a sensible list of calls.
#ifndef VNCORE_FUZZ_INPUT_H
#define VNCORE_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "tests/support/random.h"

namespace vn::fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : at_(data), end_(data + size) {}

  bool Done() const { return at_ == end_; }
  uint8_t Byte() { return Done() ? uint8_t{0} : *at_++; }
  bool Flag() { return Byte() & 1; }

  // 0 to `count` - 1, for a count of 1 to 256.
  uint32_t Below(size_t count) { return static_cast<uint32_t>(Byte() % count); }
  // From `low` to `high`, both included.
  int32_t Between(int32_t low, int32_t high) {
    const uint32_t span = static_cast<uint32_t>(high) - static_cast<uint32_t>(low);
    const uint32_t drawn = span < 0x100 ? Byte() : Word();
    return static_cast<int32_t>(static_cast<uint32_t>(low) +
                                (span + 1 ? drawn % (span + 1) : drawn));
  }
  int32_t OneOf(std::initializer_list<int32_t> values) {
    return values.begin()[Below(values.size())];
  }

  // Any 32-bit number: one byte for the small ones and for those at which arithmetic turns, five
  // for the rest.
  int32_t Number() {
    static constexpr uint32_t kTurns[] = {
        255,        256,        257,        511,        1000,       4095,       4096,
        9000,       18000,      35999,      36000,      0xFFFF,     0x10000,    0x10001,
        0xFFFFFF,   0x1000000,  0x1FFFFFF,  0x8000000,  0x10000001, 0x3FFFFFFF, 0x40000000,
        0x7FFFFFFE, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFF0000, 0xFFFF8000};
    constexpr uint32_t kPlain = 0xC0, kNegative = 0xE0, kTurn = kNegative + sizeof kTurns / 4;
    const uint32_t first = Byte();
    if (first < kPlain) return static_cast<int32_t>(first);
    if (first < kNegative) return static_cast<int32_t>(kPlain - 1 - first);
    if (first < kTurn) return static_cast<int32_t>(kTurns[first - kNegative]);
    return static_cast<int32_t>(Word());
  }

  // One byte fills any length: all zero, all one, or one of 254 random patterns. A pattern repeats
  // at a length that no row has, since to draw every byte would take most of a target's time.
  void Fill(void* bytes, size_t count) {
    const uint8_t kind = Byte();
    if (count == 0) return;
    auto* const at = static_cast<uint8_t*>(bytes);
    if (kind == 0 || kind == 0xFF) {
      std::memset(at, kind, count);
      return;
    }
    size_t filled = std::min<size_t>(count, 251);
    test::Random(kind).Fill(at, filled);
    for (; filled < count; filled *= 2)
      std::memcpy(at + filled, at, std::min(filled, count - filled));
  }

 private:
  uint32_t Word() {
    uint32_t word = 0;
    for (int i = 0; i < 4; ++i)
      word = word << 8 | Byte();
    return word;
  }

  const uint8_t* at_;
  const uint8_t* end_;
};

}  // namespace vn::fuzz

#endif
