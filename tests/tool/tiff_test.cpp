// TIFF files of many kinds and layouts, and damaged ones.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/tool/damage.h"
#include "tests/tool/made_tiff.h"
#include "tests/tool/shown_pixels.h"
#include "tests/tool/temporary_folder.h"
#include "tools/failure.h"

namespace vn::test {
namespace {

using tool::Bitmap;

constexpr TiffLayout kLayouts[] = {
    {},
    {.bigEndian = true},
    {.bottomUp = true},
    {.tiled = true},
    {.planes = true},
    {.tiled = true, .planes = true, .bigEndian = true},
    {.tiled = true, .bottomUp = true},
    {.lowBitFirst = true},
    {.tiled = true, .lowBitFirst = true},
};

// 1 where samples are rounded before alpha is laid or inks are taken together, or by libtiff.
int32_t ToleranceOf(const TiffKind& kind) {
  return (kind.alpha && (kind.depth == 16 || kind.alpha == EXTRASAMPLE_ASSOCALPHA)) ||
         (kind.depth == 16 && kind.colors == 4) || kind.photometric == PHOTOMETRIC_YCBCR;
}

TEST(Tiff, EveryKindInEveryLayoutShowsItsSamples) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.tif");
  Random random(1);
  for (const TiffKind& kind : kTiffKinds) {
    for (const auto& [width, height] : {std::pair{1, 1}, {3, 6}, {71, 37}}) {
      const MadeTiff picture(kind, width, height, random);
      for (const TiffLayout& layout : kLayouts) {
        if (layout.planes && kind.photometric == PHOTOMETRIC_YCBCR) continue;  // libtiff fails
        SCOPED_TRACE(testing::Message()
                     << "photometric " << kind.photometric << ", depth " << kind.depth << ", alpha "
                     << kind.alpha << ", compression " << kind.compression << ", " << width << "x"
                     << height << ", layout " << &layout - kLayouts);
        picture.WriteTo(path, layout);
        const Rgb background{10, 200, 77};
        Bitmap bitmap;
        ASSERT_NO_THROW(Load(path, background, bitmap));
        EXPECT_EQ(bitmap->BitsPerPixel, picture.BitmapBits());
        EXPECT_EQ(bitmap->XResolution, 300);
        EXPECT_EQ(bitmap->YResolution, 150);
        ExpectShows(
            bitmap,
            [&](int32_t x, int32_t y) {
              return picture.ColorAt(x, layout.bottomUp ? height - 1 - y : y, background);
            },
            ToleranceOf(kind));
        if (HasFatalFailure()) return;
      }
    }
  }
}

// One strip or tile that is longer than a band: bands begin within it.
TEST(Tiff, TallStripsAndTilesAreReadInParts) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.tif");
  const auto level = [](int32_t y) { return static_cast<uint8_t>(y * 7 + y / 256); };
  for (const bool tiled : {false, true}) {
    const int32_t width = tiled ? 16384 : 4224, height = 2064;  // 33.8 MB, 34.9 MB as RGBA
    const int samples = tiled ? 1 : 3;
    const size_t rowBytes = static_cast<size_t>(width * samples);
    std::vector<uint8_t> pixels(rowBytes * static_cast<size_t>(height));
    for (int32_t y = 0; y < height; ++y) {
      std::fill_n(pixels.begin() + static_cast<int64_t>(rowBytes) * y, rowBytes, level(y));
    }
    if (!tiled) {  // no chroma
      for (size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = i % 3 == 0 ? pixels[i] : 128;
    }
    TIFF* const tiff = TIFFOpen(path.c_str(), "w");
    ASSERT_NE(tiff, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, tiled ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_YCBCR);
    if (!tiled) TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_PACKBITS);
    if (tiled) {
      TIFFSetField(tiff, TIFFTAG_TILEWIDTH, width);
      TIFFSetField(tiff, TIFFTAG_TILELENGTH, height);
      TIFFWriteEncodedTile(tiff, 0, pixels.data(), static_cast<tmsize_t>(pixels.size()));
    } else {
      TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height);
      TIFFWriteEncodedStrip(tiff, 0, pixels.data(), static_cast<tmsize_t>(pixels.size()));
    }
    TIFFClose(tiff);

    const auto source = tool::OpenPicture(path, {});
    ASSERT_EQ(source->Info().bits, tiled ? 8 : 24);
    std::vector<uint8_t> row(static_cast<size_t>(width * source->Info().bits / 8));
    for (int32_t y = 0; y < height; ++y) {
      source->ReadRow(row.data());
      ASSERT_TRUE(row.front() == level(y) && row.back() == level(y)) << "row " << y;
    }
  }
}

// As photographs are kept: libtiff holds a JPEG picture of halved chroma in every strip.
TEST(Tiff, JpegStripsShowTheirColors) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.tif");
  TIFF* const tiff = TIFFOpen(path.c_str(), "w");
  ASSERT_NE(tiff, nullptr);
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 50);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 40);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_YCBCR);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JPEG);
  TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 95);
  TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
  const auto colorAt = [](int32_t x, int32_t y) { return Rgb{5 * x, 6 * y, 200 - 2 * x - y}; };
  for (int32_t y = 0; y < 40; ++y) {
    uint8_t row[150];
    for (int32_t x = 0; x < 50; ++x)
      PutColor<24, ORDER_RGB>(row, static_cast<size_t>(x), colorAt(x, y));
    ASSERT_EQ(TIFFWriteScanline(tiff, row, static_cast<uint32_t>(y), 0), 1);
  }
  TIFFClose(tiff);
  Bitmap bitmap;
  ASSERT_NO_THROW(Load(path, {}, bitmap));
  ExpectShows(bitmap, colorAt, 12);
}

TEST(Tiff, DamageIsAFailureOrAPictureNeverMore) {
  const TemporaryFolder folder;
  const std::string path = folder.File("in.tif");
  Random random(2);
  for (const TiffKind& kind : kTiffKinds) {
    const TiffLayout layout = kLayouts[random.Between(0, std::size(kLayouts) - 1)];
    MadeTiff(kind, 37, 11, random).WriteTo(path, layout);
    const std::string sound = ReadFile(path);
    // The last bytes may be padding of a tile or a strip.
    for (size_t length = 0; length + 200 < sound.size(); length += 1 + length / 8) {
      WriteFile(path, sound.substr(0, length));
      Bitmap bitmap;
      EXPECT_THROW(Load(path, {}, bitmap), tool::Failure) << "cut to " << length;
    }
    LoadDamaged(path, sound, 1, random);
  }
}

TEST(Tiff, APipeIsRefusedBothWays) {
  const TemporaryFolder folder;
  const std::string path = folder.File("pipe.tif");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const int pipe = open(path.c_str(), O_RDWR);  // so that nobody waits for the other end
  ASSERT_GE(pipe, 0);
  EXPECT_THROW(tool::OpenPictureFile(path), tool::Failure);
  ASSERT_EQ(write(pipe, "II*\0\x8\0\0\0", 8), 8);
  EXPECT_THROW(tool::OpenPicture(path, {}), tool::Failure);
  close(pipe);
}

}  // namespace
}  // namespace vn::test
