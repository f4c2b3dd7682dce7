#include "tests/tool/sampled.h"

namespace vn::test {

Sampled::Sampled(Meaning what, int bits, Alpha transparent, int32_t columns, int32_t lines,
                 Random& random)
    : meaning(what), depth(bits), alpha(transparent), width(columns), height(lines) {
  const int32_t most = (1 << depth) - 1;
  if (meaning == Meaning::kPalette) palette.resize(static_cast<size_t>(std::max(most - 1, 2)));
  for (Rgb& color : palette)
    color = {random.Between(0, 255), random.Between(0, 255), random.Between(0, 255)};
  const int32_t last = palette.empty() ? most : static_cast<int32_t>(palette.size()) - 1;
  for (int64_t pixel = 0; pixel < int64_t{width} * height; ++pixel) {
    const int32_t opacity = random.Between(0, most);
    for (int i = 0; i < Colors(); ++i)
      samples.push_back(random.Between(0, alpha == Alpha::kMultiplied ? opacity : last));
    if (alpha != Alpha::kNone) samples.push_back(opacity);
  }
}

// CIE L*a*b* under D50.
Rgb ShowLab(double l, double a, double b) {
  const double fy = (l + 16) / 116, at[3] = {fy + a / 500, fy, fy - b / 200};
  const double white[3] = {0.9642, 1, 0.8251};
  const double to[3][3] = {
      {3.13386, -1.61687, -0.49061}, {-0.97877, 1.91614, 0.03345}, {0.07195, -0.22899, 1.40524}};
  double light[3] = {};
  for (int i = 0; i < 9; ++i) {
    const double t = at[i % 3];
    light[i / 3] +=
        to[i / 3][i % 3] * white[i % 3] * (t > 6.0 / 29 ? t * t * t : (116 * t - 16) / 903.3);
  }
  const auto level = [](double v) {
    v = std::clamp(v, 0.0, 1.0);
    v = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
    return static_cast<int32_t>(std::lround(255 * v));
  };
  return {level(light[0]), level(light[1]), level(light[2])};
}

Rgb Sampled::ColorAt(int32_t x, int32_t y, Rgb background) const {
  const auto level = [&](int sample) { return To8(At(x, y, sample), depth); };
  const auto light = [&](int ink) { return ((255 - level(ink)) * (255 - level(3)) + 127) / 255; };
  const int32_t gray = meaning == Meaning::kWhiteIsZero ? 255 - level(0) : level(0);
  Rgb color{gray, gray, gray};
  if (meaning == Meaning::kPalette) color = palette[At(x, y, 0)];
  if (meaning == Meaning::kRgb) color = {level(0), level(1), level(2)};
  if (meaning == Meaning::kInks) color = {light(0), light(1), light(2)};
  if (meaning == Meaning::kYcc) {
    const double cb = level(1) - 128, cr = level(2) - 128;
    const auto channel = [&](double moved) {
      return static_cast<int32_t>(std::lround(std::clamp(level(0) + moved, 0.0, 255.0)));
    };
    color = {channel(1.402 * cr), channel(-0.344136 * cb - 0.714136 * cr), channel(1.772 * cb)};
  }
  if (meaning >= Meaning::kLab) {
    const auto chroma = [&](int i) {
      const int32_t whole = At(x, y, i), half = 1 << (depth - 1);
      const bool offset = meaning == Meaning::kIccLab || whole >= half;
      return (whole - offset * half * (meaning == Meaning::kIccLab ? 1 : 2)) * 128.0 / half;
    };
    color = ShowLab(At(x, y, 0) * 100.0 / ((1 << depth) - 1), chroma(1), chroma(2));
  }
  int32_t opacity = alpha == Alpha::kNone ? 255 : level(Colors());
  if (At(x, y, 0) < transparency.size()) opacity = transparency[At(x, y, 0)];
  if (!key.empty() &&
      std::equal(key.begin(), key.end(), &samples[(int64_t{y} * width + x) * Count()]))
    opacity = 0;
  const int32_t share = alpha == Alpha::kMultiplied ? 255 : opacity;
  const auto lay = [&](int32_t over, int32_t under) {
    return static_cast<int32_t>(std::lround((over * share + under * (255 - opacity)) / 255.0));
  };
  return {lay(color.red, background.red), lay(color.green, background.green),
          lay(color.blue, background.blue)};
}

std::vector<uint8_t> Sampled::Rows(int32_t left, int32_t top, int32_t columns, int32_t lines,
                                   int first, int count) const {
  const auto bits = static_cast<size_t>(depth);
  const size_t stride = (static_cast<size_t>(columns * count) * bits + 7) / 8;
  std::vector<uint8_t> rows(stride * static_cast<size_t>(lines));
  for (int32_t y = 0; y < lines && top + y < height; ++y) {
    uint8_t* const row = &rows[stride * static_cast<size_t>(y)];
    for (int32_t x = 0; x < columns && left + x < width; ++x) {
      for (int i = 0; i < count; ++i) {
        const uint32_t value = At(left + x, top + y, first + i);
        const size_t at = static_cast<size_t>(x * count + i) * bits / 8;
        if (depth == 16) row[at + 1] = static_cast<uint8_t>(value);
        row[at] |= static_cast<uint8_t>(
            depth == 16 ? value >> 8 : value << (8 - bits - (x * count + i) * bits % 8));
      }
    }
  }
  return rows;
}

}  // namespace vn::test
