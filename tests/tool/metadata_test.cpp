// What pictures say of themselves: from format to format, told where it stays behind, and heeded
// where it tells what colours are and how a picture lies.
#include <gtest/gtest.h>

#ifdef VNCORE_TOOL_LCMS
#include <lcms2.h>
#endif
#ifdef VNCORE_TOOL_TIFF
#include <tiffio.h>
#endif

#include <algorithm>
#include <cmath>

#include "tests/tool/command.h"
#include "tools/formats/exif.h"

namespace vn::test {
namespace {

using tool::ExifField;
using tool::Metadata;

// What keeps metadata.
const std::vector<std::string> kKeepers = {
    "png",
#ifdef VNCORE_TOOL_JPEG
    "jpg",
#endif
#ifdef VNCORE_TOOL_TIFF
    "tif",
#endif
};

bool Same(const std::vector<ExifField>& a, const std::vector<ExifField>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
    return x.tag == y.tag && x.type == y.type && x.count == y.count && x.value == y.value;
  });
}

#ifdef VNCORE_TOOL_LCMS
std::string ProfileBytes(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

// The primaries of sRGB with samples that are light itself.
std::string LinearProfile() {
  const cmsCIExyY white = {0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
  cmsToneCurve* const line = cmsBuildGamma(nullptr, 1);
  cmsToneCurve* const curves[] = {line, line, line};
  const std::string bytes = ProfileBytes(cmsCreateRGBProfile(&white, &primaries, curves));
  cmsFreeToneCurve(line);
  return bytes;
}
std::string LinearGrayProfile() {
  cmsToneCurve* const line = cmsBuildGamma(nullptr, 1);
  const std::string bytes = ProfileBytes(cmsCreateGrayProfile(cmsD50_xyY(), line));
  cmsFreeToneCurve(line);
  return bytes;
}

// Inks whose cyan alone counts, as gray of the lightness that it leaves.
std::string CyanProfile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  cmsPipeline* const table = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage* const stage = cmsStageAllocCLut16bit(nullptr, 2, 4, 3, nullptr);
  cmsStageSampleCLut16bit(
      stage,
      [](const cmsUInt16Number in[], cmsUInt16Number out[], void*) -> cmsInt32Number {
        out[0] = static_cast<cmsUInt16Number>((0xFFFFu - in[0]) * 0xFF00 / 0xFFFF);
        out[1] = out[2] = 0x8000;
        return 1;
      },
      nullptr, 0);
  cmsPipelineInsertStage(table, cmsAT_END, stage);
  cmsWriteTag(profile, cmsSigAToB0Tag, table);
  cmsPipelineFree(table);
  return ProfileBytes(profile);
}

int32_t SrgbLevel(double light) {
  const double v = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  return static_cast<int32_t>(std::lround(255 * v));
}
#endif

Metadata Everything() {
  Metadata metadata;
#ifdef VNCORE_TOOL_LCMS
  metadata.profile = LinearProfile();
#endif
  metadata.exif.SetText(tool::kExifArtist, "J\xC3\xBCrgen O'Neill");
  metadata.exif.SetText(tool::kExifCopyright, "(c) 1996");
  metadata.exif.SetText(tool::kExifDate, "1996:02:29 12:34:56");
  metadata.exif.photo = {{0x829A, 5, 1, std::string("\1\0\0\0\x7D\0\0\0", 8)},
                         {0x8827, 3, 1, std::string("\x90\1", 2)}};
  metadata.exif.gps = {{0x0001, 2, 2, std::string("N\0", 2)}};
  metadata.xmp = "<x:xmpmeta/>";
  metadata.comment = "One line\nand another";
  metadata.notes = {{"Title", "\xE2\x82\xAC"}};
  return metadata;
}

class MetadataTest : public Command {
 protected:
  void Write(const std::string& name, const Metadata& metadata, int32_t bits = 24) const {
    tool::PictureInfo info;
    info.width = 256;
    info.height = 1;
    info.bits = bits;
    info.xDotsPerInch = info.yDotsPerInch = 300;
    if (bits == 8) info.colors = tool::GrayRamp(256);
    info.metadata = metadata;
    WritePicture(work_.File(name), info, [bits](int32_t x, int32_t) {
      return static_cast<uint32_t>(x) * (bits == 24 ? 0x10101u : 1u);
    });
  }
  Metadata Read(const std::string& name) const {
    return tool::OpenPicture(work_.File(name), {})->Info().metadata;
  }
};

TEST_F(MetadataTest, GoesFromEachFormatToEach) {
  const Metadata all = Everything();
  for (const std::string& from : kKeepers) {
    testing::internal::CaptureStderr();
    Write("in." + from, all);
    testing::internal::GetCapturedStderr();
    for (const std::string& to : kKeepers) {
      SCOPED_TRACE(from + " to " + to);
      EXPECT_EQ(Run("convert in." + from + " out." + to).status, 0);
      const Metadata got = Read("out." + to);
      EXPECT_EQ(got.profile, all.profile);
      EXPECT_TRUE(Same(got.exif.main, all.exif.main));
      EXPECT_EQ(got.xmp, all.xmp);
      const bool tiff = from == "tif" || to == "tif", notes = from == "png" && to == "png";
      EXPECT_TRUE(Same(got.exif.photo, tiff ? std::vector<ExifField>() : all.exif.photo));
      EXPECT_TRUE(Same(got.exif.gps, tiff ? std::vector<ExifField>() : all.exif.gps));
      EXPECT_EQ(got.comment, tiff ? "" : all.comment);
      EXPECT_EQ(got.notes, notes ? all.notes : Metadata().notes);
      EXPECT_EQ(Look("out." + to).xDotsPerInch, 300);
    }
  }
}

TEST_F(MetadataTest, WhatStaysBehindIsToldInOneLineOrStripped) {
  Write("in.png", Everything());
  const Outcome told = Run("convert in.png out.bmp");
  EXPECT_EQ(told.status, 0);
  EXPECT_TRUE(told.error.starts_with("vncore: warning: out.bmp is without: ")) << told.error;
  EXPECT_TRUE(told.error.ends_with(
      "date, artist, copyright, camera settings, position, XMP data, comment and notes\n"))
      << told.error;
  EXPECT_EQ(std::count(told.error.begin(), told.error.end(), '\n'), 1);
  ExpectRuns("convert in.png out.bmp --strip");
  ExpectRuns("paint in.png out.png --device-bits 24");
  EXPECT_EQ(Read("out.png").exif.Text(tool::kExifArtist), "J\xC3\xBCrgen O'Neill");
  EXPECT_EQ(Look("out.png").yDotsPerInch, 300);
  ExpectRuns("convert in.png out.png --strip");
  EXPECT_TRUE(Read("out.png").exif.Empty() && Read("out.png").profile.empty());
}

TEST_F(MetadataTest, InfoTellsByTheHeaderAlone) {
  Write("in.png", Everything());
  const std::string sound = ReadFile(work_.File("in.png"));
  WriteFile(work_.File("cut.png"), sound.substr(0, sound.find("IDAT") + 4));
  const Outcome text = Run("info cut.png"), json = Run("info cut.png --json");
  for (const char* line :
       {"PNG", "256 x 1 pixels", "8 bits, RGB", "300 x 300 dots", "1, upright", "O'Neill"}) {
    EXPECT_NE(text.out.find(line), std::string::npos) << line << " in\n" << text.out;
  }
  EXPECT_TRUE(
      json.out.starts_with("{\"file\": \"cut.png\", \"format\": \"PNG\", \"width\": 256, "));
  EXPECT_NE(json.out.find("\"comment\": \"One line\\u000aand another\""), std::string::npos);
}

// Blocks of either order of bytes say the same, and what is damaged says less but does no harm.
TEST(Exif, BlocksAreReadAsWrittenAndDamageIsLeftOut) {
  const tool::Exif exif = Everything().exif;
  const std::string block = WriteExif(exif);
  const auto read = [](const std::string& bytes) {
    return tool::ReadExif(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  };
  EXPECT_TRUE(Same(read(block).fields.main, exif.main));
  EXPECT_TRUE(Same(read(block).fields.photo, exif.photo));
  EXPECT_TRUE(Same(read(block).fields.gps, exif.gps));
  const std::string big(
      "MM\0*\0\0\0\x8\0\2\x1\xA\0\5\0\0\0\1\0\0\0\x26\x87\x69\0\4\0\0\0\1\0\0\0\x26"
      "\0\0\0\0\0\1\x82\x9A\0\5\0\0\0\1\0\0\0\x38\0\0\0\0\0\0\0\1\0\0\0\x7D",
      64);
  ASSERT_EQ(read(big).fields.photo.size(), 1u);
  EXPECT_EQ(read(big).fields.photo[0].value, exif.photo[0].value);
  Random random(7);
  for (int i = 0; i < 5000; ++i) {
    std::string damaged = block.substr(0, static_cast<size_t>(random.Between(0, 400)));
    for (int32_t bytes = random.Between(1, 6); bytes > 0 && !damaged.empty(); --bytes) {
      const int32_t at = random.Between(0, static_cast<int32_t>(damaged.size()) - 1);
      damaged[static_cast<size_t>(at)] = static_cast<char>(random.Next());
    }
    const tool::Exif fields = read(damaged).fields;
    const tool::Exif again = read(WriteExif(fields)).fields;
    EXPECT_TRUE(Same(fields.photo, again.photo) && Same(fields.gps, again.gps));
  }
}

#ifdef VNCORE_TOOL_LCMS
TEST_F(MetadataTest, ColoursOfAProfileBecomeSrgb) {
  const auto lit = [](int32_t x, int32_t) {
    const int32_t level = SrgbLevel(x / 255.0);
    return Rgb{level, level, level};
  };
  for (const std::string& format : kKeepers) {
    for (const int32_t bits : {8, 24}) {
      SCOPED_TRACE(format + " " + std::to_string(bits));
      Metadata metadata;
      metadata.profile = bits == 8 ? LinearGrayProfile() : LinearProfile();
      Write("in." + format, metadata, bits);
      ExpectRuns("convert in." + format + " out.png --srgb");
      ExpectShows(Look("out.png"), lit, format == "jpg" ? 12 : 1);
      EXPECT_EQ(Read("out.png").profile, "");
      ExpectRuns("convert in." + format + " out.png");
      EXPECT_EQ(Read("out.png").profile, metadata.profile);
    }
  }
  Metadata damaged;
  damaged.profile = LinearProfile().substr(0, 200);
#ifdef VNCORE_TOOL_JPEG
  Write("in.jpg", damaged);
  ExpectFails("convert in.jpg out.png --srgb");
#endif
}

#ifdef VNCORE_TOOL_TIFF
TEST_F(MetadataTest, InksAreShownByTheirProfile) {
  TIFF* const tiff = TIFFOpen(work_.File("in.tif").c_str(), "w");
  ASSERT_NE(tiff, nullptr);
  const std::string profile = CyanProfile();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 256);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_SEPARATED);
  TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<uint32_t>(profile.size()), profile.data());
  std::vector<uint8_t> row(1024);
  for (size_t i = 0; i < row.size(); ++i)
    row[i] = static_cast<uint8_t>(i % 4 == 0 ? i / 4 : 77 * i);
  TIFFWriteScanline(tiff, row.data(), 0, 0);
  TIFFClose(tiff);
  const Seen seen = Look("in.tif");
  ExpectShows(
      seen,
      [](int32_t x, int32_t) {
        const double l = 100 * (255 - x) / 255.0, f = (l + 16) / 116;
        const int32_t level = SrgbLevel(l > 8 ? f * f * f : l / 903.3);
        return Rgb{level, level, level};
      },
      2);
  ExpectRuns("convert in.tif out.png");
  EXPECT_EQ(Read("out.png").profile, "");
}
#endif
#endif

#ifdef VNCORE_TOOL_TIFF
TEST_F(MetadataTest, HeldPicturesArePaintedUpright) {
  Make("upright.png", 31, 20);
  ExpectRuns("convert upright.png held.tif");
  std::string file = ReadFile(work_.File("held.tif"));
  const size_t at = file.find(std::string("\x12\1\3\0\1\0\0\0", 8));
  ASSERT_NE(at, file.npos);
  file[at + 8] = 6;
  WriteFile(work_.File("held.tif"), file);
  ExpectRuns("paint held.tif out.png --device-bits 24");
  const Seen upright = Look("upright.png"), out = Look("out.png");
  ASSERT_TRUE(out.width == 20 && out.height == 31);
  ExpectShows(out, [&](int32_t x, int32_t y) { return upright.At(y, 19 - x); });
}
#endif

}  // namespace
}  // namespace vn::test
