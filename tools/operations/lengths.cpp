#include "tools/operations/lengths.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace vn::tool {
namespace {

constexpr double kMostLength = 1'000'000;

std::optional<Length> ParseLength(std::string_view text, bool millimetres) {
  Length length{0, millimetres};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length.value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (!(std::abs(length.value) <= kMostLength)) return std::nullopt;
  return length;
}

std::optional<LengthPair> ParsePair(std::string_view text, char separator) {
  const bool millimetres = text.ends_with("mm");
  if (millimetres) text.remove_suffix(2);
  const size_t middle = text.find(separator);
  if (middle == text.npos) return std::nullopt;
  const auto first = ParseLength(text.substr(0, middle), millimetres);
  const auto second = ParseLength(text.substr(middle + 1), millimetres);
  if (!first || !second) return std::nullopt;
  return LengthPair{*first, *second};
}

struct NamedPaper {
  std::string_view name;
  double width, height;  // millimetres
};
constexpr NamedPaper kPapers[] = {{"A3", 297, 420},         {"A4", 210, 297},
                                  {"A5", 148, 210},         {"A6", 105, 148},
                                  {"letter", 215.9, 279.4}, {"legal", 215.9, 355.6}};

}  // namespace

int32_t Length::Pixels(int32_t dotsPerInch) const {
  const double pixels = millimetres ? value / kMillimetresPerInch * dotsPerInch : value;
  return static_cast<int32_t>(std::lround(pixels));
}

std::optional<LengthPair> ParsePosition(const std::string& text) { return ParsePair(text, ','); }

std::optional<LengthPair> ParseExtent(const std::string& text) {
  const auto pair = ParsePair(text, 'x');
  return pair && pair->first.value >= 0 && pair->second.value >= 0 ? pair : std::nullopt;
}

std::optional<LengthPair> ParsePaper(const std::string& text) {
  for (const NamedPaper& paper : kPapers) {
    if (paper.name == text) return LengthPair{{paper.width, true}, {paper.height, true}};
  }
  const auto extent = ParseExtent(text);
  return extent && extent->first.millimetres ? extent : std::nullopt;
}

}  // namespace vn::tool
