// The fold of a case, and the list of families.
#include "tests/cases/case.h"

#include <cstdarg>
#include <cstdio>
#include <string_view>

namespace vn::cases {

namespace {

// Cases of different families with the same number share nothing.
uint64_t Seed(std::string_view family, uint32_t number) {
  uint64_t seed = 0xCBF29CE484222325u;
  for (const char letter : family)
    seed = (seed ^ static_cast<uint8_t>(letter)) * 0x100000001B3u;
  return seed + number * 0x9E3779B97F4A7C15u;
}

}  // namespace

Case::Case(const char* family, uint32_t number, bool verbose)
    : random(Seed(family, number)), verbose_(verbose) {}

void Case::Fold(const char* what, int64_t value) {
  for (int i = 0; i < 8; ++i)
    Mix(static_cast<uint8_t>(static_cast<uint64_t>(value) >> 8 * i));
  Note("%s = %lld", what, static_cast<long long>(value));
}

void Case::FoldBytes(const char* what, const void* bytes, size_t count) {
  const auto* at = static_cast<const uint8_t*>(bytes);
  for (size_t i = 0; i < count; ++i)
    Mix(at[i]);
  if (!verbose_) return;
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    static const char digits[] = "0123456789abcdef";
    if (i % 4 == 0) text += ' ';
    text += digits[at[i] >> 4];
    text += digits[at[i] & 15];
  }
  std::printf("  %s:%s\n", what, text.c_str());
}

void Case::Note(const char* format, ...) {
  if (!verbose_) return;
  va_list arguments;
  va_start(arguments, format);
  std::printf("  ");
  std::vprintf(format, arguments);
  std::printf("\n");
  va_end(arguments);
}

std::vector<Family>& Families() {
  static std::vector<Family> families;
  return families;
}

}  // namespace vn::cases
