// Lengths on paper, as options give them.
#ifndef VNCORE_TOOLS_LENGTHS_H
#define VNCORE_TOOLS_LENGTHS_H

#include <cstdint>
#include <optional>
#include <string>

namespace vn::tool {

inline constexpr double kMillimetresPerInch = 25.4;

// In dots of the page, or in millimetres.
struct Length {
  double value = 0;
  bool millimetres = false;

  int32_t Pixels(int32_t dotsPerInch) const;
};

struct LengthPair {
  Length first, second;
};

// "20,25mm", "100,-5": "mm" behind the second one holds for both
std::optional<LengthPair> ParsePosition(const std::string& text);
// "150x0mm", "600x400": neither is negative
std::optional<LengthPair> ParseExtent(const std::string& text);
// "A4", "letter", "100x150mm": always millimetres
std::optional<LengthPair> ParsePaper(const std::string& text);

}  // namespace vn::tool

#endif
