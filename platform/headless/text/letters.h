// The letters of a text.
#ifndef VNCORE_PLATFORM_HEADLESS_LETTERS_H
#define VNCORE_PLATFORM_HEADLESS_LETTERS_H

#include <cstddef>
#include <string>

namespace headless {

// UTF-8 taken apart. Each byte that begins no valid sequence is U+FFFD.
std::u32string LettersOf(const char* text, size_t bytes);

}  // namespace headless

#endif
