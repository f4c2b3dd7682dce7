#include "platform/headless/text/letters.h"

#include <cstdint>

namespace headless {
namespace {

constexpr char32_t kNoLetter = 0xFFFD;

// The letter that begins at a byte, and how many bytes it takes. Of the spellings of a letter only
// the shortest counts, and halves of pairs of UTF-16 are no letters.
char32_t LetterAt(const char* text, size_t left, size_t* bytes) {
  const auto first = static_cast<uint8_t>(*text);
  *bytes = 1;
  if (first < 0x80) return first;
  const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || length > left) return kNoLetter;
  char32_t letter = first & (0x7Fu >> length);
  for (size_t i = 1; i < length; ++i) {
    const auto next = static_cast<uint8_t>(text[i]);
    if ((next & 0xC0) != 0x80) return kNoLetter;
    letter = letter << 6 | (next & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (letter < kLeast[length] || letter > 0x10FFFF || (letter >= 0xD800 && letter < 0xE000))
    return kNoLetter;
  *bytes = length;
  return letter;
}

}  // namespace

std::u32string LettersOf(const char* text, size_t bytes) {
  std::u32string letters;
  for (size_t at = 0, length; at < bytes; at += length)
    letters += LetterAt(text + at, bytes - at, &length);
  return letters;
}

}  // namespace headless
