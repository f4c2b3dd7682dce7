// What is particular to TIFF: blocks taller than a band, and places without a way back.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>

#include "tests/support/temporary_folder.h"
#include "tools/formats/picture.h"
#include "tools/terminal/failure.h"

namespace vn::test {
namespace {

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
    std::vector<uint8_t> row(width * source->Info().bits / 8);
    for (int32_t y = 0; y < height; ++y) {
      source->ReadRow(row.data());
      ASSERT_TRUE(row.front() == level(y) && row.back() == level(y)) << "row " << y;
    }
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
