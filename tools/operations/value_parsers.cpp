#include "tools/operations/value_parsers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include <vncore/vn_storage.h>
#include "tools/operations/bitmap.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// Exactly N whole numbers with `separator` between them.
template <size_t N>
std::optional<std::array<int32_t, N>> ParseNumbers(std::string_view text, char separator,
                                                   int base = 10) {
  std::array<int32_t, N> numbers{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (size_t i = 0; i < N; ++i) {
    if (i > 0 && (at == end || *at++ != separator)) return std::nullopt;
    const auto [next, error] = std::from_chars(at, end, numbers[i], base);
    if (error != std::errc{}) return std::nullopt;
    at = next;
  }
  if (at != end) return std::nullopt;
  return numbers;
}

std::optional<Rgb> ParseHexColor(std::string_view digits) {
  if (digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos) return std::nullopt;
  const auto value = ParseNumbers<1>(digits, ' ', 16);
  if (!value) return std::nullopt;
  const int32_t v = (*value)[0];
  if (digits.size() == 3) return Rgb{(v >> 8) * 17, (v >> 4 & 15) * 17, (v & 15) * 17};
  if (digits.size() == 6) return Rgb{v >> 16, v >> 8 & 255, v & 255};
  return std::nullopt;
}

struct NamedColor {
  std::string_view name;
  Rgb color;
};
constexpr NamedColor kColors[] = {
    {"black", {0, 0, 0}},      {"white", {255, 255, 255}}, {"gray", {128, 128, 128}},
    {"red", {255, 0, 0}},      {"green", {0, 128, 0}},     {"blue", {0, 0, 255}},
    {"yellow", {255, 255, 0}}, {"cyan", {0, 255, 255}},    {"magenta", {255, 0, 255}},
    {"orange", {255, 165, 0}}, {"brown", {165, 42, 42}},   {"navy", {0, 0, 128}},
    {"maroon", {128, 0, 0}},   {"olive", {128, 128, 0}},   {"purple", {128, 0, 128}},
    {"teal", {0, 128, 128}},   {"lime", {0, 255, 0}},      {"silver", {192, 192, 192}}};

}  // namespace

std::optional<Size> ParseSize(const std::string& text) {
  const auto numbers = ParseNumbers<2>(text, 'x');
  if (!numbers) return std::nullopt;
  return Size{(*numbers)[0], (*numbers)[1]};
}

std::optional<double> ParseDecimal(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::optional<NewSize> ParseNewSize(const std::string& text) {
  if (const auto size = ParseSize(text)) return NewSize{size};
  if (!text.ends_with('%')) return std::nullopt;
  const auto percent = ParseDecimal(std::string_view(text).substr(0, text.size() - 1));
  if (!percent || *percent <= 0 || *percent > 1e6) return std::nullopt;
  return NewSize{std::nullopt, *percent / 100};
}

std::optional<Part> ParsePart(const std::string& text) {
  if (const auto size = ParseSize(text)) return Part{{0, 0, size->width, size->height}, true};
  const auto numbers = ParseNumbers<4>(text, ',');
  if (!numbers) return std::nullopt;
  return Part{{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]}};
}

std::optional<std::vector<int32_t>> ParseNumberList(const std::string& text) {
  std::vector<int32_t> numbers;
  std::string_view left = text;
  for (;;) {
    const size_t comma = left.find(',');
    const auto number = ParseNumbers<1>(left.substr(0, comma), ',');
    if (!number) return std::nullopt;
    numbers.push_back((*number)[0]);
    if (comma == left.npos) return numbers;
    left.remove_prefix(comma + 1);
  }
}

std::optional<Rgb> ParseColor(const std::string& text) {
  for (const NamedColor& named : kColors) {
    if (named.name == text) return named.color;
  }
  if (text.starts_with('#')) return ParseHexColor(std::string_view(text).substr(1));
  const auto numbers = ParseNumbers<3>(text, ',');
  if (!numbers) return std::nullopt;
  for (const int32_t channel : *numbers) {
    if (channel < 0 || channel > 255) return std::nullopt;
  }
  return Rgb{(*numbers)[0], (*numbers)[1], (*numbers)[2]};
}

std::optional<int32_t> ParseStorage(const std::string& text) {
  if (text == "auto") return STORAGE_AUTO;
  if (text == "disk") return STORAGE_DISK;
  if (text == "memory") return STORAGE_MEMORY;
  return std::nullopt;
}

Area Part::Of(int32_t width, int32_t height) const {
  Area found = area;
  if (middle) {
    found.x = std::max(width - area.width, 0) / 2;
    found.y = std::max(height - area.height, 0) / 2;
  }
  const bool inside = found.x >= 0 && found.y >= 0 && found.width > 0 && found.height > 0 &&
                      found.width <= width - found.x && found.height <= height - found.y;
  if (inside) return found;
  throw Failure("--crop must lie within the picture of " + std::to_string(width) + "x" +
                std::to_string(height));
}

RECT StorageRect(const BitmapHandle& bitmap, const Area& area) {
  const int32_t first = StorageRow(bitmap, area.y);
  const int32_t last = StorageRow(bitmap, area.y + area.height - 1);
  return {area.x, std::min(first, last), area.x + area.width, std::max(first, last) + 1};
}

}  // namespace vn::tool
