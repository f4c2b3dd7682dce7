// TIFF files as rows of 1, 4, 8 or 24 bits: the first picture of a file.
//
// Palettes and grays of up to 8 bits keep their depth (2 bits become 4) and their polarity: where
// white is 0, so it is in the palette. They and 24-bit colour come row by row from strips, and tile
// row by tile row from tiles. Everything else (16 bits, planes, YCbCr, CMYK, Lab, alpha) goes
// through libtiff's conversion to RGBA, in bands of rows; gray becomes 8 bits there and the rest
// 24, with alpha laid over the background.
#ifndef VNCORE_TOOLS_TIFF_READER_H
#define VNCORE_TOOLS_TIFF_READER_H

#include <memory>
#include <vector>

#include "tools/input_file.h"
#include "tools/picture.h"
#include "tools/tiff_handle.h"

namespace vn::tool {

bool IsTiff(const InputFile& file);

class TiffReader : public PictureSource {
 public:
  TiffReader(std::unique_ptr<InputFile> file, const ReadOptions& options);
  const PictureInfo& Info() const override { return info_; }
  int32_t NextLine() const override { return bottomUp_ ? info_.height - 1 - row_ : row_; }
  void ReadRow(uint8_t* row) override;

 private:
  enum class Supply { kStrips, kTiles, kRaster };
  // libtiff's conversion to RGBA.
  struct Raster {
    Raster() = default;
    Raster(const Raster&) = delete;
    Raster& operator=(const Raster&) = delete;
    ~Raster() {
      if (begun) TIFFRGBAImageEnd(&image);
    }
    TIFFRGBAImage image{};
    bool begun = false;
  };
  struct Header;

  Header ReadHeader();
  void ChooseForm(const Header& header);
  void TakePalette();
  void TakeGrays(bool whiteIsZero);
  void TakeResolution();
  void PrepareBands(const Header& header);
  void PrepareRaster();
  const uint8_t* BandRow();
  void ReadTiles(int32_t count);
  void ReadRaster(int32_t count);
  void ToKernelRow(const uint8_t* raw, uint8_t* row) const;
  void RasterToKernelRow(const uint32_t* raster, uint8_t* row) const;
  [[noreturn]] void Fail() const;
  // Damage that libtiff reported and went on after is a failure as well.
  void RequireSound(bool done) const {
    if (!done || error_.text[0]) Fail();
  }

  std::unique_ptr<InputFile> file_;
  Rgb background_;
  TiffError error_;
  TiffPointer tiff_;
  Raster raster_;

  PictureInfo info_;
  Supply supply_ = Supply::kRaster;
  bool bottomUp_ = false;
  bool twoBits_ = false;
  uint32_t grayStep_ = 1;  // of two bits
  int32_t row_ = 0;        // the file's next row

  size_t rawBytes_ = 0;  // of a row as it stands in strips and tiles
  int32_t blockRows_ = 0;
  int32_t mostBandRows_ = 0;
  int32_t bandFirst_ = 0, bandCount_ = 0;  // the rows in band_
  std::vector<uint32_t> band_;
  std::vector<uint8_t> tile_;
  std::vector<uint8_t> raw_;
};

}  // namespace vn::tool

#endif
