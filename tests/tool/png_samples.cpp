#include <png.h>

#include <csetjmp>
#include <stdexcept>

#include "tests/tool/sampled.h"

namespace vn::test {
namespace {

struct PngKind {
  int colorType;
  int depth;
  bool transparent;  // with a tRNS chunk
};

constexpr PngKind kPngKinds[] = {
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

Sampled MakeSamples(const PngKind& kind, int32_t width, int32_t height, Random& random) {
  const bool paletted = kind.colorType == PNG_COLOR_TYPE_PALETTE;
  const bool color = kind.colorType & PNG_COLOR_MASK_COLOR;
  Sampled made(paletted ? Meaning::kPalette
               : color  ? Meaning::kRgb
                        : Meaning::kGray,
               kind.depth, kind.colorType & PNG_COLOR_MASK_ALPHA ? Alpha::kPlain : Alpha::kNone,
               width, height, random);
  if (kind.transparent && paletted) {
    made.transparency.resize(made.palette.size() / 2 + 1);
    random.Fill(made.transparency.data(), made.transparency.size());
  } else if (kind.transparent) {
    made.key.assign(made.samples.begin(), made.samples.begin() + made.Count());
  }
  return made;
}

void Append(png_structp png, png_bytep bytes, size_t count) {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(bytes), count);
}

std::string Encode(Sampled made, const PngKind& kind, bool interlaced) {
  std::string file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  std::vector<uint8_t> bytes = made.Rows(0, 0, made.width, made.height, 0, made.Count());
  std::vector<png_bytep> rows;
  for (size_t y = 0; y < static_cast<size_t>(made.height); ++y)
    rows.push_back(bytes.data() + y * bytes.size() / static_cast<size_t>(made.height));
  std::vector<png_color> palette;
  for (const Rgb& c : made.palette)
    palette.push_back({static_cast<png_byte>(c.red), static_cast<png_byte>(c.green),
                       static_cast<png_byte>(c.blue)});
  png_color_16 key{};
  if (made.key.size() == 1) key.gray = made.key[0];
  if (made.key.size() == 3) key = {0, made.key[0], made.key[1], made.key[2], 0};

  if (setjmp(png_jmpbuf(png))) throw std::logic_error("libpng cannot write the test's picture");
  png_set_write_fn(png, &file, &Append, nullptr);
  png_set_IHDR(png, info, made.width, made.height, made.depth, kind.colorType,
               interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_set_gAMA(png, info, 0.3);  // to be ignored
  png_set_pHYs(png, info, 11811, 5906, PNG_RESOLUTION_METER);
  if (!palette.empty()) png_set_PLTE(png, info, palette.data(), palette.size());
  if (kind.transparent) {
    png_set_tRNS(png, info, made.transparency.empty() ? nullptr : made.transparency.data(),
                 made.transparency.size(), &key);
  }
  png_set_rows(png, info, rows.data());
  png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  png_destroy_write_struct(&png, &info);
  return file;
}

}  // namespace

void ForPngSamples(bool each, const UseSample& use) {
  Random random(1);
  for (const PngKind& kind : kPngKinds) {
    for (const auto& [width, height] : {std::pair{9, 7}, {1, 1}, {3, 2}, {2, 6}, {37, 21}}) {
      const Sampled made = MakeSamples(kind, width, height, random);
      for (const bool interlaced : {random.Chance(2), true, false}) {
        use({Told("colour type", kind.colorType, "depth", kind.depth, "transparent",
                  kind.transparent, "interlaced", interlaced, width),
             Encode(made, kind, interlaced), width, height, made.BitmapBits(), 0, true, 0,
             [&](int32_t x, int32_t y, Rgb under) { return made.ColorAt(x, y, under); }});
        if (each) break;
      }
      if (each) break;
    }
  }
}

}  // namespace vn::test
