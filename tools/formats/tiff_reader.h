// TIFF files as rows of 1, 4, 8 or 24 bits: the first picture of a file.
//
// Palettes and grays of up to 8 bits keep their depth (2 bits become 4) and their polarity: where
// white is 0, so it is in the palette. 16-bit samples are rounded to 8, alpha is laid over the
// background, inks become colours by the kernel's formula. YCbCr, Lab and the like become colours
// in libtiff.
#ifndef VNCORE_TOOLS_TIFF_READER_H
#define VNCORE_TOOLS_TIFF_READER_H

#include <memory>
#include <vector>

#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"
#include "tools/formats/tiff_input.h"
#include "tools/formats/tiff_rows.h"

namespace vn::tool {

bool IsTiff(const InputFile& file);

class TiffReader : public PictureSource {
 public:
  TiffReader(std::unique_ptr<InputFile> file, const ReadOptions& options);

  const PictureInfo& Info() const override { return info_; }
  int32_t NextLine() const override { return bottomUp_ ? info_.height - 1 - row_ : row_; }
  void ReadRow(uint8_t* row) override;

 private:
  // What the rows are that TiffRows gives.
  enum class Form { kReady, kTwoBits, kSamples8, kSamples16, kRgba };
  struct Header;

  Header ReadHeader() const;
  void TakeOrientation();
  void TakeResolution();
  void ChooseForm(const Header& header);
  void ChooseSamples(const Header& header);
  void TakeGrays(bool whiteIsZero);
  void TakePalette();
  template <class Sample>
  void SamplesToKernelRow(const Sample* samples, uint8_t* row) const;
  template <class Sample>
  void InksToKernelRow(const Sample* samples, uint8_t* row);
  void RgbaToKernelRow(const uint32_t* pixels, uint8_t* row) const;

  TiffInput input_;
  Rgb background_;
  PictureInfo info_;
  bool bottomUp_ = false;
  int32_t row_ = 0;  // the file's next row

  Form form_ = Form::kRgba;
  uint32_t grayStep_ = 1;  // of two bits
  size_t samples_ = 1;     // of a pixel
  size_t colors_ = 1;      // those of them that are colour: 1, 3, or 4 inks
  int alpha_ = 0;          // an EXTRASAMPLE_ value of the one after them; 0: none
  bool invert_ = false;    // gray with alpha has no palette to turn
  std::unique_ptr<TiffRows> rows_;
  std::vector<uint8_t> inks_;  // a row of them, 8 bits each
};

}  // namespace vn::tool

#endif
