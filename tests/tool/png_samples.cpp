#include <png.h>

#include <cmath>
#include <csetjmp>
#include <stdexcept>

#include "tests/tool/samples.h"

namespace vn::test {
namespace {

struct PngKind {
  int colorType;
  int depth;
  bool transparent;  // with a tRNS chunk
};

constexpr PngKind kKinds[] = {
    {PNG_COLOR_TYPE_GRAY, 1, false},        {PNG_COLOR_TYPE_GRAY, 2, false},
    {PNG_COLOR_TYPE_GRAY, 4, false},        {PNG_COLOR_TYPE_GRAY, 8, false},
    {PNG_COLOR_TYPE_GRAY, 16, false},       {PNG_COLOR_TYPE_GRAY, 1, true},
    {PNG_COLOR_TYPE_GRAY, 2, true},         {PNG_COLOR_TYPE_GRAY, 8, true},
    {PNG_COLOR_TYPE_GRAY, 16, true},        {PNG_COLOR_TYPE_PALETTE, 1, false},
    {PNG_COLOR_TYPE_PALETTE, 2, true},      {PNG_COLOR_TYPE_PALETTE, 4, false},
    {PNG_COLOR_TYPE_PALETTE, 8, true},      {PNG_COLOR_TYPE_RGB, 8, false},
    {PNG_COLOR_TYPE_RGB, 8, true},          {PNG_COLOR_TYPE_RGB, 16, false},
    {PNG_COLOR_TYPE_RGB, 16, true},         {PNG_COLOR_TYPE_GRAY_ALPHA, 8, false},
    {PNG_COLOR_TYPE_GRAY_ALPHA, 16, false}, {PNG_COLOR_TYPE_RGB_ALPHA, 8, false},
    {PNG_COLOR_TYPE_RGB_ALPHA, 16, false}};

class MadePng {
 public:
  MadePng(const PngKind& kind, int32_t width, int32_t height, Random& random);

  // The file's bytes.
  std::string Encode(bool interlaced) const;
  // What pixel (x, y) shows over `background`.
  Rgb ColorAt(int32_t x, int32_t y, Rgb background) const;
  // The depth of the bitmap that it must become over a gray background.
  int32_t BitmapBits() const;

 private:
  int Channels() const;

  PngKind kind_;
  int32_t width_, height_;
  std::vector<uint16_t> samples_;
  std::vector<png_color> palette_;
  std::vector<png_byte> alphas_;  // of palette entries
  std::vector<uint16_t> key_;     // the transparent gray or colour
};

void Append(png_structp png, png_bytep bytes, size_t count) {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(bytes), count);
}

int32_t To8(uint16_t sample, int depth) {
  return static_cast<int32_t>(std::lround(sample * 255.0 / ((1 << depth) - 1)));
}

int32_t Over(int32_t color, int32_t alpha, int32_t background) {
  return static_cast<int32_t>(std::lround((color * alpha + background * (255.0 - alpha)) / 255.0));
}

MadePng::MadePng(const PngKind& kind, int32_t width, int32_t height, Random& random)
    : kind_(kind), width_(width), height_(height) {
  const int32_t most = (1 << kind.depth) - 1;
  const bool paletted = kind.colorType == PNG_COLOR_TYPE_PALETTE;
  // A palette need not be full.
  const int32_t entries = std::max(most - 1, 2);
  samples_.resize(static_cast<size_t>(width) * static_cast<size_t>(height) *
                  static_cast<size_t>(Channels()));
  for (uint16_t& sample : samples_) {
    sample = static_cast<uint16_t>(random.Between(0, paletted ? entries - 1 : most));
  }
  if (paletted) {
    palette_.resize(static_cast<size_t>(entries));
    random.Fill(palette_.data(), palette_.size() * sizeof palette_[0]);
    if (kind.transparent) alphas_.resize(static_cast<size_t>(entries) / 2 + 1);
    random.Fill(alphas_.data(), alphas_.size());
  } else if (kind.transparent) {
    key_.assign(samples_.begin(), samples_.begin() + Channels());  // so that some pixel has it
  }
}

int MadePng::Channels() const {
  if (kind_.colorType == PNG_COLOR_TYPE_PALETTE) return 1;
  return (kind_.colorType & PNG_COLOR_MASK_COLOR ? 3 : 1) +
         (kind_.colorType & PNG_COLOR_MASK_ALPHA ? 1 : 0);
}

std::string MadePng::Encode(bool interlaced) const {
  std::string file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  const auto rowSamples = static_cast<size_t>(width_) * static_cast<size_t>(Channels());
  const size_t bytesPerSample = kind_.depth == 16 ? 2 : 1;
  std::vector<uint8_t> bytes(samples_.size() * bytesPerSample);
  for (size_t i = 0; i < samples_.size(); ++i) {
    bytes[i * bytesPerSample] = static_cast<uint8_t>(samples_[i] >> (kind_.depth == 16 ? 8 : 0));
    if (kind_.depth == 16) bytes[2 * i + 1] = static_cast<uint8_t>(samples_[i]);
  }
  std::vector<png_bytep> rows;
  for (size_t y = 0; y < static_cast<size_t>(height_); ++y) {
    rows.push_back(bytes.data() + y * rowSamples * bytesPerSample);
  }
  png_color_16 key{};
  if (key_.size() == 1) key.gray = key_[0];
  if (key_.size() == 3) key.red = key_[0], key.green = key_[1], key.blue = key_[2];

  if (setjmp(png_jmpbuf(png))) throw std::logic_error("libpng cannot write the test's picture");
  png_set_write_fn(png, &file, &Append, nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width_), static_cast<png_uint_32>(height_),
               kind_.depth, kind_.colorType, interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_gAMA(png, info, 0.3);  // to be ignored
  png_set_pHYs(png, info, 11811, 5906, PNG_RESOLUTION_METER);
  if (!palette_.empty()) {
    png_set_PLTE(png, info, palette_.data(), static_cast<int>(palette_.size()));
  }
  if (kind_.transparent) {
    png_set_tRNS(png, info, alphas_.empty() ? nullptr : alphas_.data(),
                 static_cast<int>(alphas_.size()), &key);
  }
  png_set_rows(png, info, rows.data());
  png_write_png(png, info, PNG_TRANSFORM_PACKING, nullptr);
  png_destroy_write_struct(&png, &info);
  return file;
}

Rgb MadePng::ColorAt(int32_t x, int32_t y, Rgb background) const {
  const uint16_t* const s = samples_.data() + (int64_t{y} * width_ + x) * Channels();
  const int depth = kind_.depth;
  Rgb color{};
  int32_t alpha = 255;
  if (kind_.colorType == PNG_COLOR_TYPE_PALETTE) {
    const png_color& entry = palette_[s[0]];
    color = {entry.red, entry.green, entry.blue};
    if (s[0] < alphas_.size()) alpha = alphas_[s[0]];
  } else if (kind_.colorType & PNG_COLOR_MASK_COLOR) {
    color = {To8(s[0], depth), To8(s[1], depth), To8(s[2], depth)};
    if (Channels() == 4) alpha = To8(s[3], depth);
  } else {
    const int32_t gray = To8(s[0], depth);
    color = {gray, gray, gray};
    if (Channels() == 2) alpha = To8(s[1], depth);
  }
  if (!key_.empty() && std::equal(key_.begin(), key_.end(), s)) alpha = 0;
  return {Over(color.red, alpha, background.red), Over(color.green, alpha, background.green),
          Over(color.blue, alpha, background.blue)};
}

int32_t MadePng::BitmapBits() const {
  if (kind_.colorType & PNG_COLOR_MASK_COLOR && !palette_.size()) return 24;
  return kind_.depth == 2 ? 4 : std::min(kind_.depth, 8);
}

}  // namespace

void ForPngSamples(bool each, const UseSample& use) {
  Random random(1);
  for (const PngKind& kind : kKinds) {
    for (const auto& [width, height] : {std::pair{9, 7}, {1, 1}, {3, 2}, {2, 6}, {37, 21}}) {
      const MadePng made(kind, width, height, random);
      for (const bool interlaced : {random.Chance(2), true, false}) {
        use({Told("colour type", kind.colorType, "depth", kind.depth, "transparent",
                  kind.transparent, "interlaced", interlaced, width),
             made.Encode(interlaced), width, height, made.BitmapBits(), 0, true, 0,
             [&](int32_t x, int32_t y, Rgb under) { return made.ColorAt(x, y, under); }});
        if (each) break;
      }
      if (each) break;
    }
  }
}

}  // namespace vn::test
