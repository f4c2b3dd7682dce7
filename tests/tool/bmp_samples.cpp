// BMP files of every kind.
#include <bit>

#include "tests/support/pixels.h"
#include "tests/tool/sampled.h"

namespace vn::test {
namespace {

struct BmpKind {
  uint32_t header;  // bytes
  int32_t bits;     // of a pixel
  uint32_t compression;
  bool topDown;
  uint32_t masks[4];  // red, green, blue, opacity, above 8 bits
  bool Runs() const { return compression == 1 || compression == 2; }
};

constexpr BmpKind kBmpKinds[] = {
    {40, 1, 0, false, {}},
    {40, 4, 0, true, {}},
    {40, 8, 0, false, {}},
    {12, 1, 0, false, {}},
    {12, 4, 0, false, {}},
    {12, 8, 0, false, {}},
    {12, 24, 0, false, {0xFF0000, 0xFF00, 0xFF}},
    {40, 16, 0, false, {0x7C00, 0x3E0, 0x1F}},
    {40, 24, 0, true, {0xFF0000, 0xFF00, 0xFF}},
    {124, 32, 0, false, {0xFF0000, 0xFF00, 0xFF}},
    {40, 16, 3, false, {0xF800, 0x7E0, 0x1F}},
    {40, 32, 3, true, {0xFF, 0xFF00, 0xFF000000}},
    {108, 32, 3, false, {0xFF00, 0xFF0000, 0xFF000000, 0xFF}},
    {64, 8, 1, false, {}},
    {40, 8, 1, false, {}},
    {40, 4, 2, false, {}},
};

// Of samples that the fields of a pixel can hold; in runs where lengths are encoded.
Sampled MakeSamples(const BmpKind& kind, int32_t width, int32_t height, Random& random) {
  if (kind.bits > 8) {
    Sampled made(Meaning::kRgb, 8, kind.masks[3] ? Alpha::kPlain : Alpha::kNone, width, height,
                 random);
    for (size_t i = 0; i < made.samples.size(); ++i) {
      const int lost = 8 - std::popcount(kind.masks[i % static_cast<size_t>(made.Count())]);
      const int kept = made.samples[i] >> lost << lost;
      made.samples[i] = static_cast<uint16_t>(kept | kept >> (8 - lost));
    }
    return made;
  }
  Sampled made(Meaning::kPalette, kind.bits, Alpha::kNone, width, height, random);
  for (size_t i = 2; kind.Runs() && i < made.samples.size(); ++i)
    if (!random.Chance(3)) made.samples[i] = made.samples[i - 2];
  return made;
}

std::string Number(uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i, value >>= 8)
    text.push_back(static_cast<char>(value));
  return text;
}

// The header and the table of colours.
std::string Head(const Sampled& made, const BmpKind& kind) {
  const auto width = static_cast<uint32_t>(made.width), height = static_cast<uint32_t>(made.height);
  const auto bits = static_cast<uint32_t>(kind.bits);
  std::string text = Number(kind.header, 4);
  if (kind.header == 12) {
    text += Number(width, 2) + Number(height, 2) + Number(1, 2) + Number(bits, 2);
  } else {
    text += Number(width, 4) + Number(kind.topDown ? 0 - height : height, 4) + Number(1, 2) +
            Number(bits, 2);
    for (const uint32_t field : {kind.compression, 0u, 11811u, 5906u, 0u, 0u})
      text += Number(field, 4);
  }
  for (int i = 0; kind.compression == 3 && i < (kind.header > 40 ? 4 : 3); ++i)
    text += Number(kind.masks[i], 4);
  if (text.size() < kind.header) text.resize(kind.header);
  for (size_t i = 0; bits <= 8 && i < size_t{1} << bits; ++i) {
    const Rgb c = i < made.palette.size() ? made.palette[i] : Rgb{};
    for (const int32_t channel : {c.blue, c.green, c.red})
      text += static_cast<char>(channel);
    if (kind.header > 12) text += '\xEE';
  }
  return text;
}

std::string Packed(const Sampled& made, int32_t x, int32_t y, int32_t count) {
  const std::vector<uint8_t> bytes = made.Rows(x, y, count, 1, 0, 1);
  return {bytes.begin(), bytes.end()};
}

std::string Row(const Sampled& made, const BmpKind& kind, int32_t y) {
  std::string row = kind.bits <= 8 ? Packed(made, 0, y, made.width) : "";
  for (int32_t x = 0; kind.bits > 8 && x < made.width; ++x) {
    uint32_t pixel = 0;
    for (int i = 0; i < made.Count(); ++i)
      pixel |= static_cast<uint32_t>(made.At(x, y, i) >> (8 - std::popcount(kind.masks[i])))
               << std::countr_zero(kind.masks[i]);
    row += Number(pixel, kind.bits / 8);
  }
  row.resize((row.size() + 3) / 4 * 4);
  return row;
}

// Alternating pairs as runs, and pixels as they stand in between.
std::string RunsOfRow(const Sampled& made, const BmpKind& kind, int32_t y) {
  std::string text;
  for (int32_t x = 0; x < made.width;) {
    const int32_t period = kind.bits == 4 ? 2 : 1;
    int32_t run = 1;
    while (x + run < made.width && run < 255 &&
           (run < period || made.At(x + run, y, 0) == made.At(x + run - period, y, 0)))
      ++run;
    const int32_t plain = std::min(made.width - x, 5);
    const bool copies = run < 3 && plain >= 3;
    const int32_t count = copies ? plain : run;
    const std::string pixels = Packed(made, x, y, copies ? plain : std::min(run, period));
    if (copies) text += '\0';
    text += static_cast<char>(count);
    text += pixels;
    if (copies && pixels.size() % 2) text += '\0';
    x += count;
  }
  return text + std::string(2, '\0');
}

std::string Encode(const Sampled& made, const BmpKind& kind) {
  const std::string head = Head(made, kind), gap = "unused";  // rows need not follow at once
  std::string file = "BM" + std::string(8, '\0');
  file += Number(14 + head.size() + gap.size(), 4);
  file += head + gap;
  for (int32_t row = 0; row < made.height; ++row) {
    const int32_t y = kind.topDown ? row : made.height - 1 - row;
    file += kind.Runs() ? RunsOfRow(made, kind, y) : Row(made, kind, y);
  }
  return kind.Runs() ? file + std::string("\0\1", 2) : file;
}

}  // namespace

void ForBmpSamples(bool each, const UseSample& use) {
  Random random(5);
  for (const BmpKind& kind : kBmpKinds) {
    for (const auto& [width, height] : {std::pair{9, 7}, {1, 1}, {3, 2}, {300, 5}}) {
      const Sampled made = MakeSamples(kind, width, height, random);
      use({Told("header", kind.header, "bits", kind.bits, "compression", kind.compression, width),
           Encode(made, kind), width, height, made.BitmapBits(), 0, kind.header > 12,
           kind.Runs() ? size_t{2} : 0,
           [&](int32_t x, int32_t y, Rgb under) { return made.ColorAt(x, y, under); }});
      if (each) break;
    }
  }
}

}  // namespace vn::test
