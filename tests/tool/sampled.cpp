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

Rgb Sampled::ColorAt(int32_t x, int32_t y, Rgb background) const {
  const auto level = [&](int sample) { return To8(At(x, y, sample), depth); };
  const auto light = [&](int ink) { return std::max(255 - level(ink) - level(3), 0); };
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
