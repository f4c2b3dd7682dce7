// JPEG files of many kinds, written ones, and damaged ones.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>
// libjpeg's headers need <cstdio> before them.
#include <jpeglib.h>

#include "tests/support/random.h"
#include "tests/tool/damage.h"
#include "tests/tool/shown_pixels.h"
#include "tests/tool/temporary_folder.h"
#include "tools/coefficient_store.h"
#include "tools/failure.h"

namespace vn::test {
namespace {

using tool::Bitmap;

struct JpegKind {
  J_COLOR_SPACE given, stored;
  bool adobe = false;  // with Adobe's marker, and inks turned as it has them
};
constexpr JpegKind kJpegKinds[] = {{JCS_GRAYSCALE, JCS_GRAYSCALE}, {JCS_RGB, JCS_YCbCr},
                                   {JCS_RGB, JCS_RGB, true},       {JCS_CMYK, JCS_CMYK, true},
                                   {JCS_CMYK, JCS_YCCK, true},     {JCS_CMYK, JCS_CMYK, false}};

enum class Scans { kOne, kProgressive, kOneEach };
struct JpegForm {
  Scans scans = Scans::kOne;
  bool halfChroma = false;
};

// Smooth, so that little is lost: four levels of pixel (x, y).
uint8_t LevelAt(int32_t x, int32_t y, int channel) {
  const int32_t slopes[] = {2 * x + y, 255 - x, 3 * y, 40 + y / 2};
  return static_cast<uint8_t>(slopes[channel] % 510 > 255 ? 509 - slopes[channel] % 510
                                                          : slopes[channel] % 510);
}

int SamplesOf(const JpegKind& kind) {
  return kind.given == JCS_GRAYSCALE ? 1 : kind.given == JCS_RGB ? 3 : 4;
}

Rgb ShownAt(const JpegKind& kind, int32_t x, int32_t y) {
  int32_t levels[4];
  for (int i = 0; i < 4; ++i)
    levels[i] = LevelAt(x, y, i);
  const auto light = [&](int32_t ink) { return std::max(255 - ink - levels[3], 0); };
  switch (SamplesOf(kind)) {
    case 1:
      return {levels[0], levels[0], levels[0]};
    case 3:
      return {levels[0], levels[1], levels[2]};
    default:
      return {light(levels[0]), light(levels[1]), light(levels[2])};
  }
}

std::string MakeJpeg(const JpegKind& kind, const JpegForm& form, int32_t width, int32_t height) {
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr error;
  jpeg.err = jpeg_std_error(&error);  // which ends the test on an error
  jpeg_create_compress(&jpeg);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&jpeg, &bytes, &size);
  const int samples = SamplesOf(kind);
  jpeg.image_width = static_cast<JDIMENSION>(width);
  jpeg.image_height = static_cast<JDIMENSION>(height);
  jpeg.input_components = samples;
  jpeg.in_color_space = kind.given;
  jpeg_set_defaults(&jpeg);
  jpeg_set_colorspace(&jpeg, kind.stored);
  jpeg_set_quality(&jpeg, 95, TRUE);
  if (samples == 4) jpeg.write_Adobe_marker = kind.adobe;
  for (int i = 0; i < jpeg.num_components; ++i) {
    const int factor = i == 0 && form.halfChroma ? 2 : 1;
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
  if (form.scans == Scans::kProgressive) jpeg_simple_progression(&jpeg);
  if (form.scans == Scans::kOneEach) {
    jpeg.scan_info = each;
    jpeg.num_scans = samples;
  }
  jpeg_start_compress(&jpeg, TRUE);
  std::vector<uint8_t> row(static_cast<size_t>(width * samples));
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int i = 0; i < samples; ++i) {
        const uint8_t level = LevelAt(x, y, i);
        const bool turned = samples == 4 && kind.adobe;
        row[static_cast<size_t>(x * samples + i)] =
            turned ? static_cast<uint8_t>(255 - level) : level;
      }
    }
    JSAMPROW one = row.data();
    jpeg_write_scanlines(&jpeg, &one, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  std::string file(reinterpret_cast<char*>(bytes), size);
  free(bytes);
  return file;
}

std::vector<std::vector<uint8_t>> RowsOf(const std::string& path) {
  const auto source = tool::OpenPicture(path, {});
  const tool::PictureInfo& info = source->Info();
  std::vector<std::vector<uint8_t>> rows(
      static_cast<size_t>(info.height),
      std::vector<uint8_t>(static_cast<size_t>(info.width * info.bits / 8)));
  for (auto& row : rows)
    source->ReadRow(row.data());
  source->Finish();
  return rows;
}

TEST(Jpeg, EveryKindShowsItsSamples) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.jpg");
  for (const JpegKind& kind : kJpegKinds) {
    for (const Scans scans : {Scans::kOne, Scans::kProgressive, Scans::kOneEach}) {
      for (const auto& [width, height] : {std::pair{1, 1}, {17, 3}, {90, 70}}) {
        SCOPED_TRACE(testing::Message() << "stored as " << kind.stored << ", Adobe " << kind.adobe
                                        << ", scans " << static_cast<int>(scans) << ", " << width);
        WriteFile(path, MakeJpeg(kind, {scans}, width, height));
        Bitmap bitmap;
        Load(path, {}, bitmap);
        EXPECT_EQ(bitmap->BitsPerPixel, kind.stored == JCS_GRAYSCALE ? 8 : 24);
        if (kind.stored != JCS_RGB) {
          EXPECT_EQ(bitmap->XResolution, 300);
          EXPECT_EQ(bitmap->YResolution, 150);
        }
        ExpectShows(
            bitmap, [&](int32_t x, int32_t y) { return ShownAt(kind, x, y); }, 12);
        if (HasFatalFailure()) return;
      }
    }
  }
}

// The coefficients are the same whatever the order of their coming, and wherever they are kept.
TEST(Jpeg, LargePicturesOfManyScansAreKeptInATemporaryFile) {
  const TemporaryFolder folder, temporary;
  const std::string one = folder.File("one.jpg"), many = folder.File("many.jpg");
  const char* const before = getenv("TMPDIR");
  const std::string usual = before ? before : "/tmp";
  for (const bool gray : {false, true}) {
    const JpegKind& kind = kJpegKinds[gray ? 0 : 1];
    const int32_t width = 1501, height = gray ? 1501 : 1003;  // over 4 MiB of coefficients
    static_assert(1501 * 1003 * 3 > tool::CoefficientStore::kLeast);
    WriteFile(one, MakeJpeg(kind, {Scans::kOne, true}, width, height));
    WriteFile(many, MakeJpeg(kind, {Scans::kProgressive, true}, width, height));
    const auto wanted = RowsOf(one);
    setenv("TMPDIR", temporary.Path().c_str(), 1);
    EXPECT_EQ(RowsOf(many), wanted);
    EXPECT_EQ(temporary.Names(), std::vector<std::string>{});
    setenv("TMPDIR", temporary.File("missing").c_str(), 1);
    EXPECT_EQ(RowsOf(one), wanted) << "one scan needs no file";
    EXPECT_THROW(RowsOf(many), tool::Failure) << "so it is the file that was used";
    setenv("TMPDIR", usual.c_str(), 1);
  }
  if (!before) unsetenv("TMPDIR");
}

TEST(Jpeg, EveryCutAndScansWithoutEndAreFailures) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.jpg");
  for (const JpegKind& kind : {kJpegKinds[0], kJpegKinds[1], kJpegKinds[4]}) {
    for (const Scans scans : {Scans::kOne, Scans::kProgressive, Scans::kOneEach}) {
      const std::string sound = MakeJpeg(kind, {scans, true}, 33, 21);
      for (size_t length = 0; length < sound.size(); length += 1 + length / 12) {
        WriteFile(path, sound.substr(0, length));
        Bitmap bitmap;
        EXPECT_THROW(Load(path, {}, bitmap), tool::Failure) << "cut to " << length;
      }
      WriteFile(path, sound.substr(0, sound.size() - 1));
      Bitmap bitmap;
      EXPECT_THROW(Load(path, {}, bitmap), tool::Failure) << "cut by one byte";
    }
  }
  const std::string sound = MakeJpeg(kJpegKinds[1], {Scans::kOneEach}, 8, 8);
  const size_t first = sound.find("\xFF\xDA"), second = sound.find("\xFF\xDA", first + 2);
  ASSERT_NE(second, std::string::npos);
  // Scans that say the same again: what a file for a denial of service is made of.
  const auto withScans = [&](int count) {
    std::string file = sound.substr(0, first);
    for (int i = 1; i < count; ++i)
      file += sound.substr(first, second - first);
    return file + sound.substr(first);
  };
  Bitmap few, many;
  WriteFile(path, withScans(3));
  Load(path, {}, few);
  WriteFile(path, withScans(600));
  EXPECT_THROW(Load(path, {}, many), tool::Failure);
}

TEST(Jpeg, DamageIsAFailureOrAPictureNeverMore) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.jpg");
  Random random(5);
  for (const JpegKind& kind : kJpegKinds) {
    for (const Scans scans : {Scans::kOne, Scans::kProgressive}) {
      const std::string sound = MakeJpeg(kind, {scans, random.Chance(2)}, 33, 21);
      LoadDamaged(path, sound, 1, random);
    }
  }
}

// Pictures of every depth come back near to what they were, and gray ones as gray ones.
TEST(Jpeg, WrittenPicturesComeBackNearAndGrayOnesGray) {
  const TemporaryFolder folder;
  const std::string path = folder.File("out.jpeg");
  for (const int32_t bits : {1, 4, 8, 24}) {
    for (const bool gray : {true, false}) {
      if (gray && bits == 24) continue;
      SCOPED_TRACE(testing::Message() << bits << " bits, gray " << gray);
      tool::PictureInfo info;
      info.width = 75;
      info.height = 43;
      info.bits = bits;
      info.xDotsPerInch = 600;
      info.yDotsPerInch = 300;
      if (bits <= 8) {
        info.colors = tool::GrayRamp(1 << bits);
        std::reverse(info.colors.begin(), info.colors.end());
      }
      if (!gray) {
        for (RGBQUAD& color : info.colors)
          color.rgbRed /= 2;
      }
      // Areas of one colour, 16 pixels wide: no edge within a block.
      const auto indexAt = [bits](int32_t x, int32_t y) {
        return static_cast<uint32_t>((x / 16 * 5 + y / 16 * 11) % (1 << std::min(bits, 8)));
      };
      const auto colorAt = [&](int32_t x, int32_t y) {
        const auto index = indexAt(x, y);
        return bits <= 8 ? ColorOf(info.colors[index]) : Rgb{255, static_cast<int32_t>(index), 0};
      };
      const auto sink = tool::CreatePicture(tool::OpenPictureFile(path), info);
      std::vector<uint8_t> row(static_cast<size_t>(info.width) * 3);
      for (int32_t y = 0; y < info.height; ++y) {
        for (int32_t x = 0; x < info.width; ++x) {
          const auto at = static_cast<size_t>(x);
          if (bits == 1) PutIndex<1>(row.data(), at, indexAt(x, y));
          if (bits == 4) PutIndex<4>(row.data(), at, indexAt(x, y));
          if (bits == 8) PutIndex<8>(row.data(), at, indexAt(x, y));
          if (bits == 24) PutColor<24, ORDER_BGR>(row.data(), at, colorAt(x, y));
        }
        sink->WriteRow(row.data());
      }
      sink->Finish();

      Bitmap bitmap;
      Load(path, {}, bitmap);
      EXPECT_EQ(bitmap->BitsPerPixel, gray ? 8 : 24);
      EXPECT_EQ(bitmap->XResolution, 600);
      EXPECT_EQ(bitmap->YResolution, 300);
      ExpectShows(bitmap, colorAt, 6);
    }
  }
}

}  // namespace
}  // namespace vn::test
