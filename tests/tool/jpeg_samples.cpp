#include <stdlib.h>

#include <csetjmp>
#include <cstdio>
// libjpeg's headers need <cstdio> before them.
#include <jpeglib.h>

#include "tests/tool/sampled.h"

namespace vn::test {
namespace {

struct JpegKind {
  J_COLOR_SPACE given, stored;
  bool adobe = false;  // with Adobe's marker, and inks turned as it has them
  int Samples() const { return given == JCS_GRAYSCALE ? 1 : given == JCS_RGB ? 3 : 4; }
};
constexpr JpegKind kGray = {JCS_GRAYSCALE, JCS_GRAYSCALE}, kColor = {JCS_RGB, JCS_YCbCr};
constexpr JpegKind kJpegKinds[] = {kGray,
                                   kColor,
                                   {JCS_RGB, JCS_RGB, true},
                                   {JCS_CMYK, JCS_CMYK, true},
                                   {JCS_CMYK, JCS_YCCK, true},
                                   {JCS_CMYK, JCS_CMYK, false}};

// Smooth, so that little is lost: four levels of pixel (x, y).
int32_t LevelAt(int32_t x, int32_t y, int channel) {
  const int32_t slopes[] = {2 * x + y, 255 - x, 3 * y, 40 + y / 2};
  const int32_t wave = slopes[channel] % 510;
  return wave > 255 ? 509 - wave : wave;
}

Sampled MakeSamples(const JpegKind& kind, int32_t width, int32_t height) {
  Random random(1);
  const Meaning meaning = kind.Samples() == 1   ? Meaning::kGray
                          : kind.Samples() == 3 ? Meaning::kRgb
                                                : Meaning::kInks;
  Sampled made(meaning, 8, Alpha::kNone, width, height, random);
  for (size_t i = 0; i < made.samples.size(); ++i) {
    const auto pixel = static_cast<int32_t>(i) / made.Count();
    made.samples[i] = LevelAt(pixel % width, pixel / width, static_cast<int>(i) % made.Count());
  }
  return made;
}

std::string Make(const JpegKind& kind, Scans scans, bool halfChroma, int32_t width,
                 int32_t height) {
  const Sampled made = MakeSamples(kind, width, height);
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr error;
  jpeg.err = jpeg_std_error(&error);  // which ends the test on an error
  jpeg_create_compress(&jpeg);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&jpeg, &bytes, &size);
  const int samples = kind.Samples();
  jpeg.image_width = static_cast<JDIMENSION>(width);
  jpeg.image_height = static_cast<JDIMENSION>(height);
  jpeg.input_components = samples;
  jpeg.in_color_space = kind.given;
  jpeg_set_defaults(&jpeg);
  jpeg_set_colorspace(&jpeg, kind.stored);
  jpeg_set_quality(&jpeg, 95, TRUE);
  if (samples == 4) jpeg.write_Adobe_marker = kind.adobe;
  for (int i = 0; i < jpeg.num_components; ++i) {
    const int factor = i == 0 && halfChroma ? 2 : 1;
    jpeg.comp_info[i].h_samp_factor = jpeg.comp_info[i].v_samp_factor = factor;
  }
  jpeg.write_JFIF_header = kind.stored != JCS_RGB;  // which would say that it is YCbCr
  jpeg.density_unit = 2;                            // dots per centimetre
  jpeg.X_density = 118;
  jpeg.Y_density = 59;
  jpeg_scan_info each[4] = {};
  for (int i = 0; i < 4; ++i) {
    each[i].comps_in_scan = 1;
    each[i].component_index[0] = i;
    each[i].Se = 63;
  }
  if (scans == Scans::kProgressive) jpeg_simple_progression(&jpeg);
  if (scans == Scans::kOneEach) {
    jpeg.scan_info = each;
    jpeg.num_scans = samples;
  }
  jpeg_start_compress(&jpeg, TRUE);
  const bool turned = samples == 4 && kind.adobe;
  for (int32_t y = 0; y < height; ++y) {
    std::vector<uint8_t> row = made.Rows(0, y, width, 1, 0, samples);
    for (uint8_t& level : row)
      level = static_cast<uint8_t>(turned ? 255 - level : level);
    JSAMPROW one = row.data();
    jpeg_write_scanlines(&jpeg, &one, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  std::string file(reinterpret_cast<char*>(bytes), size);
  free(bytes);
  return file;
}

}  // namespace

std::string MakeJpeg(bool gray, Scans scans, bool halfChroma, int32_t width, int32_t height) {
  return Make(gray ? kGray : kColor, scans, halfChroma, width, height);
}

void ForJpegSamples(bool each, const UseSample& use) {
  for (const JpegKind& kind : kJpegKinds) {
    for (const Scans scans : {Scans::kOne, Scans::kProgressive, Scans::kOneEach}) {
      for (const auto& [width, height] : {std::pair{33, 21}, {1, 1}, {17, 3}, {90, 70}}) {
        const bool halfChroma = each && kind.given != JCS_CMYK;
        const Sampled made = MakeSamples(kind, width, height);
        use({Told("stored as", kind.stored, "Adobe", kind.adobe, "scans", static_cast<int>(scans),
                  width),
             Make(kind, scans, halfChroma, width, height), width, height, made.BitmapBits(), 12,
             kind.stored != JCS_RGB, 0,
             [&](int32_t x, int32_t y, Rgb under) { return made.ColorAt(x, y, under); }});
        if (each) break;
      }
    }
  }
}

}  // namespace vn::test
