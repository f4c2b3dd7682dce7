// What a page of a TIFF file says of its pixels.
#ifndef VNCORE_TOOLS_TIFF_HEADER_H
#define VNCORE_TOOLS_TIFF_HEADER_H

#include "tools/formats/picture.h"
#include "tools/formats/tiff_input.h"
#include "tools/formats/tiff_rows.h"

namespace vn::tool {

struct TiffHeader {
  // How rows of samples are to be understood; kOther is left to libtiff.
  enum class Kind { kIndexes, kGray, kRgb, kInks, kLab, kOther };

  // Of the file's present page.
  explicit TiffHeader(const TiffInput& input);

  bool WhiteIsZero() const { return photometric == PHOTOMETRIC_MINISWHITE; }
  // Samples of colour in a pixel: 1, 3 or 4.
  uint16_t Colors() const { return kind == Kind::kInks ? 4 : kind == Kind::kGray ? 1 : 3; }
  FileFacts Facts() const;

  TiffShape shape{};
  Kind kind = Kind::kOther;
  uint16_t photometric = 0;
  int alpha = 0;  // an EXTRASAMPLE_ value of the sample behind the colours; 0: none
  uint16_t orientation = ORIENTATION_TOPLEFT;
  int32_t xDotsPerInch = 0, yDotsPerInch = 0;

 private:
  Kind KindOf(const TiffInput& input) const;
};

}  // namespace vn::tool

#endif
