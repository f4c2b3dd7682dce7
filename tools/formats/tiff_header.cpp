#include "tools/formats/tiff_header.h"

#include <bit>
#include <cmath>

namespace vn::tool {
namespace {

int32_t DotsPerInch(float perUnit, uint16_t unit) {
  const float perInch = unit == RESUNIT_CENTIMETER ? perUnit * 2.54f : perUnit;
  const bool sensible = unit != RESUNIT_NONE && perInch >= 1 && perInch <= 1e6f;  // and no NaN
  return sensible ? static_cast<int32_t>(std::lround(perInch)) : 0;
}

bool IsFax(uint16_t compression) {
  return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW ||
         compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4;
}

// What is not said to be alpha is something else.
int AlphaOf(const TiffInput& input) {
  uint16_t count = 0;
  const uint16_t* kinds = nullptr;
  if (!TIFFGetField(input.Get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0) return 0;
  return kinds[0] == EXTRASAMPLE_ASSOCALPHA || kinds[0] == EXTRASAMPLE_UNASSALPHA ? kinds[0] : 0;
}

}  // namespace

TiffHeader::TiffHeader(const TiffInput& input) {
  TIFF* const tiff = input.Get();
  shape.width = input.Field<uint32_t>(TIFFTAG_IMAGEWIDTH);
  shape.height = input.Field<uint32_t>(TIFFTAG_IMAGELENGTH);
  shape.bits = input.Field<uint16_t>(TIFFTAG_BITSPERSAMPLE);
  shape.samples = input.Field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL);
  shape.planes =
      input.Field<uint16_t>(TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE && shape.samples > 1;
  shape.tiled = TIFFIsTiled(tiff) != 0;
  const auto compression = input.Field<uint16_t>(TIFFTAG_COMPRESSION);
  if (!TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric)) {
    photometric = shape.samples >= 3   ? PHOTOMETRIC_RGB
                  : IsFax(compression) ? PHOTOMETRIC_MINISWHITE
                                       : PHOTOMETRIC_MINISBLACK;
  }
  // libjpeg then gives colours, which are read as such.
  if (photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG && shape.samples == 3 &&
      !shape.planes) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    photometric = PHOTOMETRIC_RGB;
  }
  kind = KindOf(input);
  alpha = AlphaOf(input);
  if (kind == Kind::kIndexes || shape.samples <= Colors()) alpha = 0;
  orientation = input.Field<uint16_t>(TIFFTAG_ORIENTATION);
  if (orientation < 1 || orientation > 8) orientation = ORIENTATION_TOPLEFT;
  const auto unit = input.Field<uint16_t>(TIFFTAG_RESOLUTIONUNIT);
  xDotsPerInch = DotsPerInch(input.Field<float>(TIFFTAG_XRESOLUTION), unit);
  yDotsPerInch = DotsPerInch(input.Field<float>(TIFFTAG_YRESOLUTION), unit);
}

TiffHeader::Kind TiffHeader::KindOf(const TiffInput& input) const {
  const auto format = input.Field<uint16_t>(TIFFTAG_SAMPLEFORMAT);
  const bool whole = format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID;
  const bool gray = photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK;
  // The kernel's depths, and 2 bits.
  if (whole && shape.samples == 1 && shape.bits <= 8 && std::has_single_bit(shape.bits) &&
      (gray || photometric == PHOTOMETRIC_PALETTE)) {
    return Kind::kIndexes;
  }
  if (shape.bits != 8 && shape.bits != 16) return Kind::kOther;
  // Of Lab two samples have a sign, which some writers tell.
  const bool lab = photometric == PHOTOMETRIC_CIELAB || photometric == PHOTOMETRIC_ICCLAB;
  if (lab && (whole || format == SAMPLEFORMAT_INT) && shape.samples >= 3) return Kind::kLab;
  if (!whole) return Kind::kOther;
  if (gray) return Kind::kGray;
  if (photometric == PHOTOMETRIC_RGB && shape.samples >= 3) return Kind::kRgb;
  const bool inks = photometric == PHOTOMETRIC_SEPARATED && shape.samples >= 4 &&
                    input.Field<uint16_t>(TIFFTAG_INKSET) == INKSET_CMYK;
  return inks ? Kind::kInks : Kind::kOther;
}

FileFacts TiffHeader::Facts() const {
  FileFacts facts;
  facts.format = "TIFF";
  facts.sampleBits = shape.bits;
  facts.alpha = alpha != 0;
  facts.orientation = orientation;
  switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
      facts.model = "gray";
      break;
    case PHOTOMETRIC_PALETTE:
      facts.model = "palette";
      break;
    case PHOTOMETRIC_RGB:
      facts.model = "RGB";
      break;
    case PHOTOMETRIC_SEPARATED:
      facts.model = kind == Kind::kInks ? "CMYK" : "inks";
      break;
    case PHOTOMETRIC_YCBCR:
      facts.model = "YCbCr";
      break;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_ITULAB:
      facts.model = "Lab";
      break;
    default:
      facts.model = "other";
  }
  return facts;
}

}  // namespace vn::tool
