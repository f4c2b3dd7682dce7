#include "platform/headless/surfaces/fill_rows.h"

#include <cstddef>
#include <cstring>

namespace headless {
namespace {

template <class Word>
void FillWords(uint8_t* row, int32_t x, int32_t count, const Ink& ink) {
  row += static_cast<size_t>(x) * sizeof(Word);
  const auto keep = static_cast<Word>(ink.keep), flip = static_cast<Word>(ink.flip);
  for (int32_t i = 0; i < count; ++i, row += sizeof(Word)) {
    Word word;
    std::memcpy(&word, row, sizeof word);
    word = static_cast<Word>((word & keep) ^ flip);
    std::memcpy(row, &word, sizeof word);
  }
}

void Fill24(uint8_t* row, int32_t x, int32_t count, const Ink& ink) {
  row += static_cast<size_t>(x) * 3;
  const auto part = [](uint32_t word, uint32_t shift) {
    return static_cast<uint8_t>(word >> shift);
  };
  const uint8_t keep[] = {part(ink.keep, 0), part(ink.keep, 8), part(ink.keep, 16)};
  const uint8_t flip[] = {part(ink.flip, 0), part(ink.flip, 8), part(ink.flip, 16)};
  for (int32_t i = 0; i < count; ++i, row += 3) {
    row[0] = static_cast<uint8_t>((row[0] & keep[0]) ^ flip[0]);
    row[1] = static_cast<uint8_t>((row[1] & keep[1]) ^ flip[1]);
    row[2] = static_cast<uint8_t>((row[2] & keep[2]) ^ flip[2]);
  }
}

// 1 and 4 bits: a byte of pixels at a time, the ends under a mask.
template <uint32_t Bits>
void FillPacked(uint8_t* row, int32_t x, int32_t count, const Ink& ink) {
  constexpr uint32_t kMask = (1u << Bits) - 1, kRepeat = 0xFFu / kMask;
  const uint32_t keep = (ink.keep & kMask) * kRepeat, flip = (ink.flip & kMask) * kRepeat;
  const uint64_t first = static_cast<uint64_t>(x) * Bits;
  const uint64_t end = first + static_cast<uint64_t>(count) * Bits;
  const auto mix = [&](uint64_t at, uint32_t mask) {
    row[at] = static_cast<uint8_t>((row[at] & (keep | ~mask)) ^ (flip & mask));
  };
  const uint32_t head = 0xFFu >> first % 8, tail = ~(0xFFu >> end % 8) & 0xFF;
  if (first / 8 == end / 8) return mix(first / 8, head & tail);
  mix(first / 8, head);
  for (uint64_t at = first / 8 + 1; at < end / 8; ++at)
    row[at] = static_cast<uint8_t>((row[at] & keep) ^ flip);
  if (tail) mix(end / 8, tail);
}

}  // namespace

FillRow FillRowFor(uint32_t bits) {
  switch (bits) {
    case 1:
      return &FillPacked<1>;
    case 4:
      return &FillPacked<4>;
    case 8:
      return &FillWords<uint8_t>;
    case 16:
      return &FillWords<uint16_t>;
    case 24:
      return &Fill24;
    default:
      return &FillWords<uint32_t>;
  }
}

}  // namespace headless
