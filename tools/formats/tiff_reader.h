// A page of a TIFF file as rows of 1, 4, 8 or 24 bits.
//
// Palettes and grays of up to 8 bits keep their depth (2 bits become 4) and their polarity: where
// white is 0, so it is in the palette. 16-bit samples are rounded to 8, alpha is laid over the
// background. Inks and Lab become colours here, YCbCr and the like in libtiff.
#ifndef VNCORE_TOOLS_TIFF_READER_H
#define VNCORE_TOOLS_TIFF_READER_H

#include <memory>
#include <vector>

#include "tools/formats/colors.h"
#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"
#include "tools/formats/tiff_header.h"
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
  // What rows of the file become.
  enum class Form { kReady, kTwoBits, kSamples, kRgba };

  // The depth that rows get, and a palette.
  void ChooseForm();
  void ChooseGrays();
  void ChooseColors(const ReadOptions& options);
  void TakeGrays(bool whiteIsZero);
  void TakePalette();
  template <class Sample>
  void SamplesToKernelRow(const Sample* samples, uint8_t* row);
  // The colours of samples, 8 bits each, before alpha is laid.
  template <class Sample>
  void ShowColors(const Sample* samples, uint8_t* row);
  void RgbaToKernelRow(const uint32_t* pixels, uint8_t* row) const;

  TiffInput input_;
  Rgb background_;
  const TiffHeader header_;
  PictureInfo info_;
  bool bottomUp_ = false;
  int32_t row_ = 0;  // the file's next row

  Form form_ = Form::kRgba;
  uint32_t grayStep_ = 1;           // of two bits
  bool invert_ = false;             // gray with alpha has no palette to turn
  std::unique_ptr<ToSrgb> toSrgb_;  // null: samples are taken as they stand
  std::unique_ptr<Inks> inks_;
  std::vector<uint8_t> inkRow_;
  std::unique_ptr<Lab> lab_;
  std::vector<uint16_t> labRow_;
  std::unique_ptr<TiffRows> rows_;  // null before the first row is asked for
};

}  // namespace vn::tool

#endif
