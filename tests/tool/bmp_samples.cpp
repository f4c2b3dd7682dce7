// BMP files of every kind.
#include "tests/support/pixels.h"
#include "tests/tool/samples.h"

namespace vn::test {
namespace {

struct BmpKind {
  uint32_t header;  // bytes
  int32_t bits;     // of a pixel
  uint32_t compression;
  bool topDown;
  uint32_t masks[4];  // red, green, blue, opacity, of compression 3
};

constexpr BmpKind kKinds[] = {
    {40, 1, 0, false, {}},
    {40, 4, 0, true, {}},
    {40, 8, 0, false, {}},
    {12, 1, 0, false, {}},
    {12, 4, 0, false, {}},
    {12, 8, 0, false, {}},
    {12, 24, 0, false, {}},
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

class MadeBmp {
 public:
  MadeBmp(const BmpKind& kind, int32_t width, int32_t height, Random& random)
      : kind_(kind), width_(width), height_(height) {
    for (int64_t i = 0; i < int64_t{width} * height; ++i) {
      // Runs, too, where lengths are encoded.
      const bool repeats = kind.compression == 1 || kind.compression == 2;
      const bool same = repeats && i > 1 && !random.Chance(3);
      pixels_.push_back(same ? pixels_[static_cast<size_t>(i) - 2]
                             : static_cast<uint32_t>(random.Next()) >> (32 - kind.bits));
    }
    if (kind.bits > 8) return;
    colors_.resize(1u << kind.bits);
    for (RGBQUAD& color : colors_)
      random.Fill(&color, 3);
  }

  std::string Encode() const {
    const std::string rows = kind_.compression == 1 || kind_.compression == 2 ? Runs() : Rows();
    const std::string head = Header() + Table();
    const std::string gap = "unused";  // rows need not follow at once
    const auto start = static_cast<uint32_t>(14 + head.size() + gap.size());
    std::string file = "BM";
    for (const std::string& part : {Number(0, 4), Number(0, 4), Number(start, 4), head, gap, rows})
      file += part;
    return file;
  }

  Rgb ColorAt(int32_t x, int32_t y, Rgb under) const {
    const uint32_t pixel = At(x, y);
    if (kind_.bits <= 8) return ColorOf(colors_[pixel]);
    const auto part = [&](int i) {
      const uint32_t mask = MaskOf(i);
      // Repeating a field's bits is the same as to scale it to 255 and cut, at five bits and six.
      const uint32_t low = mask & (~mask + 1), value = (pixel & mask) / low, most = mask / low;
      return static_cast<int32_t>(most == 255  ? value
                                  : most == 31 ? value << 3 | value >> 2
                                               : value << 2 | value >> 4);
    };
    Rgb color{part(0), part(1), part(2)};
    if (!kind_.masks[3]) return color;
    const int32_t alpha = part(3);
    const auto lay = [alpha](int32_t over, int32_t below) {
      return (over * alpha + below * (255 - alpha) + 127) / 255;
    };
    return {lay(color.red, under.red), lay(color.green, under.green), lay(color.blue, under.blue)};
  }

 private:
  static std::string Number(uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8)
      text.push_back(static_cast<char>(value));
    return text;
  }
  uint32_t At(int32_t x, int32_t y) const {
    return pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
  }
  uint32_t MaskOf(int i) const {
    constexpr uint32_t kPlain[] = {0xFF0000, 0xFF00, 0xFF, 0};
    return kind_.masks[0] ? kind_.masks[i] : kPlain[i];
  }
  int32_t LineOfRow(int32_t row) const { return kind_.topDown ? row : height_ - 1 - row; }

  std::string Header() const {
    const auto width = static_cast<uint32_t>(width_), height = static_cast<uint32_t>(height_);
    const auto bits = static_cast<uint32_t>(kind_.bits);
    std::string text = Number(kind_.header, 4);
    if (kind_.header == 12)
      return text + Number(width, 2) + Number(height, 2) + Number(1, 2) + Number(bits, 2);
    text += Number(width, 4) + Number(kind_.topDown ? 0 - height : height, 4) + Number(1, 2) +
            Number(bits, 2) + Number(kind_.compression, 4) + Number(0, 4) + Number(11811, 4) +
            Number(5906, 4) + Number(0, 4) + Number(0, 4);
    for (int i = 0; kind_.compression == 3 && i < (kind_.header > 40 ? 4 : 3); ++i)
      text += Number(kind_.masks[i], 4);
    if (text.size() < kind_.header) text.resize(kind_.header);
    return text;
  }
  std::string Table() const {
    std::string text;
    for (const RGBQUAD& c : colors_) {
      text += Number(c.rgbBlue, 1) + Number(c.rgbGreen, 1) + Number(c.rgbRed, 1);
      if (kind_.header > 12) text += Number(0xEE, 1);
    }
    return text;
  }
  std::string Rows() const {
    std::string text;
    for (int32_t row = 0; row < height_; ++row) {
      std::vector<uint8_t> bytes(static_cast<size_t>(width_ * kind_.bits + 31) / 32 * 4);
      for (int32_t x = 0; x < width_; ++x) {
        const uint32_t pixel = At(x, LineOfRow(row));
        const auto at = static_cast<size_t>(x);
        if (kind_.bits <= 8) SetPixelBits(&bytes, at, kind_.bits, pixel);
        for (int32_t i = 0; kind_.bits > 8 && i < kind_.bits / 8; ++i)
          bytes[at * static_cast<size_t>(kind_.bits / 8) + static_cast<size_t>(i)] =
              static_cast<uint8_t>(pixel >> 8 * i);
      }
      text.append(bytes.begin(), bytes.end());
    }
    return text;
  }
  // Alternating pairs as runs, and pixels as they stand in between.
  std::string Runs() const {
    std::string text;
    for (int32_t row = 0; row < height_; ++row) {
      const int32_t y = LineOfRow(row);
      for (int32_t x = 0; x < width_;) {
        const int32_t period = kind_.bits == 4 ? 2 : 1;
        int32_t run = 1;
        while (x + run < width_ && run < 255 &&
               (run < period || At(x + run, y) == At(x + run - period, y)))
          ++run;
        const int32_t plain = std::min(width_ - x, 5);
        const bool copies = run < 3 && plain >= 3;
        text += copies
                    ? Number(0, 1) + Number(static_cast<uint32_t>(plain), 1) + Packed(x, plain, y)
                    : Number(static_cast<uint32_t>(run), 1) + Packed(x, std::min(run, period), y);
        if (copies && Packed(x, plain, y).size() % 2) text += '\0';
        x += copies ? plain : run;
      }
      text += Number(0, 2);
    }
    return text + Number(0x100, 2);
  }
  std::string Packed(int32_t x, int32_t count, int32_t y) const {
    std::vector<uint8_t> bytes(static_cast<size_t>(count * kind_.bits + 7) / 8);
    for (int32_t i = 0; i < count; ++i)
      SetPixelBits(&bytes, static_cast<size_t>(i), kind_.bits, At(x + i, y));
    return {bytes.begin(), bytes.end()};
  }

  const BmpKind kind_;
  const int32_t width_, height_;
  std::vector<uint32_t> pixels_;
  std::vector<RGBQUAD> colors_;
};

}  // namespace

void ForBmpSamples(bool each, const UseSample& use) {
  Random random(5);
  for (const BmpKind& kind : kKinds) {
    const bool runs = kind.compression == 1 || kind.compression == 2;
    for (const auto& [width, height] : {std::pair{9, 7}, {1, 1}, {3, 2}, {300, 5}}) {
      const MadeBmp made(kind, width, height, random);
      use({Told("header", kind.header, "bits", kind.bits, "compression", kind.compression, width),
           made.Encode(), width, height,
           std::min(kind.bits, 24) == 16 ? 24 : std::min(kind.bits, 24), 0, kind.header > 12,
           runs ? size_t{2} : 0,
           [&](int32_t x, int32_t y, Rgb under) { return made.ColorAt(x, y, under); }});
      if (each) break;
    }
  }
}

}  // namespace vn::test
