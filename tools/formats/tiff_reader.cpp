#include "tools/formats/tiff_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "tools/formats/samples.h"

namespace vn::tool {
namespace {

int32_t DotsPerInch(float perUnit, uint16_t unit) {
  const float perInch = unit == RESUNIT_CENTIMETER ? perUnit * 2.54f : perUnit;
  const bool sensible = unit != RESUNIT_NONE && perInch >= 1 && perInch <= 1e6f;  // and no NaN
  return sensible ? static_cast<int32_t>(std::lround(perInch)) : 0;
}

constexpr uint8_t To8(uint8_t sample) { return sample; }
constexpr uint8_t To8(uint16_t sample) { return static_cast<uint8_t>((sample + 128) / 257); }

bool IsFax(uint16_t compression) {
  return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW ||
         compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4;
}

}  // namespace

struct TiffReader::Header {
  TiffShape shape;
  uint16_t photometric;
  bool whole;  // samples are integers without a sign
  bool inks;   // and the inks are cyan, magenta, yellow and black

  bool Gray() const {
    return photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK;
  }
  // Indexes of the kernel's depths, and of 2 bits.
  bool Indexed() const {
    return whole && shape.samples == 1 && shape.bits <= 8 && std::has_single_bit(shape.bits) &&
           (Gray() || photometric == PHOTOMETRIC_PALETTE);
  }
  // Samples of colour in a pixel of 8 or 16 bits a sample; 0 when that is not what it is.
  uint16_t Colors() const {
    const uint16_t colors = Gray()                                         ? 1
                            : photometric == PHOTOMETRIC_RGB               ? 3
                            : photometric == PHOTOMETRIC_SEPARATED && inks ? 4
                                                                           : 0;
    return whole && (shape.bits == 8 || shape.bits == 16) && shape.samples >= colors ? colors : 0;
  }
};

bool IsTiff(const InputFile& file) {
  if (file.HeadCount() < 4) return false;
  for (const char* const head : {"II*\0", "MM\0*", "II+\0", "MM\0+"}) {
    if (std::memcmp(file.Head(), head, 4) == 0) return true;
  }
  return false;
}

TiffReader::TiffReader(std::unique_ptr<InputFile> file, const ReadOptions& options)
    : input_(std::move(file)), background_(options.background) {
  const Header header = ReadHeader();
  if (!options.ignoreOrientation) TakeOrientation();
  TakeResolution();
  // Before anyone allocates rows of that width; again, once the depth is known.
  RequirePossibleSize(input_.Path(), header.shape.width, header.shape.height, 1);
  ChooseForm(header);
  RequirePossibleSize(input_.Path(), header.shape.width, header.shape.height, info_.bits);
  info_.width = static_cast<int32_t>(header.shape.width);
  info_.height = static_cast<int32_t>(header.shape.height);
  rows_ = form_ == Form::kRgba ? MakeRgbaRows(input_, header.shape)
                               : MakePlainRows(input_, header.shape);
}

TiffReader::Header TiffReader::ReadHeader() const {
  TIFF* const tiff = input_.Get();
  Header header{};
  TiffShape& shape = header.shape;
  shape.width = input_.Field<uint32_t>(TIFFTAG_IMAGEWIDTH);
  shape.height = input_.Field<uint32_t>(TIFFTAG_IMAGELENGTH);
  shape.bits = input_.Field<uint16_t>(TIFFTAG_BITSPERSAMPLE);
  shape.samples = input_.Field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL);
  shape.planes =
      input_.Field<uint16_t>(TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE && shape.samples > 1;
  shape.tiled = TIFFIsTiled(tiff) != 0;
  const auto format = input_.Field<uint16_t>(TIFFTAG_SAMPLEFORMAT);
  header.whole = format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID;
  header.inks = input_.Field<uint16_t>(TIFFTAG_INKSET) == INKSET_CMYK;
  const auto compression = input_.Field<uint16_t>(TIFFTAG_COMPRESSION);
  if (!TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &header.photometric)) {
    header.photometric = shape.samples >= 3   ? PHOTOMETRIC_RGB
                         : IsFax(compression) ? PHOTOMETRIC_MINISWHITE
                                              : PHOTOMETRIC_MINISBLACK;
  }
  // libjpeg then gives colours, which are read as such.
  if (header.photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG &&
      shape.samples == 3 && !shape.planes) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    header.photometric = PHOTOMETRIC_RGB;
  }
  return header;
}

// The numbers are those of Exif. Rows from the bottom up need no turning afterwards.
void TiffReader::TakeOrientation() {
  const auto orientation = input_.Field<uint16_t>(TIFFTAG_ORIENTATION);
  bottomUp_ = orientation == ORIENTATION_BOTLEFT;
  if (!bottomUp_) info_.orientation = orientation;
}

void TiffReader::TakeResolution() {
  const auto unit = input_.Field<uint16_t>(TIFFTAG_RESOLUTIONUNIT);
  info_.xDotsPerInch = DotsPerInch(input_.Field<float>(TIFFTAG_XRESOLUTION), unit);
  info_.yDotsPerInch = DotsPerInch(input_.Field<float>(TIFFTAG_YRESOLUTION), unit);
}

void TiffReader::ChooseForm(const Header& header) {
  info_.bits = 24;
  if (header.Indexed()) {
    const bool twoBits = header.shape.bits == 2;
    form_ = twoBits ? Form::kTwoBits : Form::kReady;
    info_.bits = twoBits ? 4 : header.shape.bits;
    header.Gray() ? TakeGrays(header.photometric == PHOTOMETRIC_MINISWHITE) : TakePalette();
  } else if (header.Colors()) {
    ChooseSamples(header);
  }
}

void TiffReader::ChooseSamples(const Header& header) {
  form_ = header.shape.bits == 8 ? Form::kSamples8 : Form::kSamples16;
  samples_ = header.shape.samples;
  colors_ = header.Colors();
  if (colors_ == 4) {
    inks_.resize(size_t{4} * header.shape.width);
    return;
  }
  if (samples_ > colors_) {
    uint16_t count = 0;
    const uint16_t* kinds = nullptr;
    // What is not said to be alpha is something else.
    if (TIFFGetField(input_.Get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) && count > 0 &&
        (kinds[0] == EXTRASAMPLE_ASSOCALPHA || kinds[0] == EXTRASAMPLE_UNASSALPHA)) {
      alpha_ = kinds[0];
    }
  }
  if (colors_ == 3) return;
  const bool whiteIsZero = header.photometric == PHOTOMETRIC_MINISWHITE;
  const bool grayBackground =
      background_.red == background_.green && background_.green == background_.blue;
  invert_ = alpha_ && whiteIsZero;
  if (alpha_ && !grayBackground) return;
  info_.bits = 8;
  TakeGrays(whiteIsZero && !invert_);
}

void TiffReader::TakeGrays(bool whiteIsZero) {
  info_.colors = GrayRamp(1 << info_.bits);
  if (whiteIsZero) std::reverse(info_.colors.begin(), info_.colors.end());
  if (form_ == Form::kTwoBits) grayStep_ = kGrayStepOfTwoBits;
}

void TiffReader::TakePalette() {
  const uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
  if (!TIFFGetField(input_.Get(), TIFFTAG_COLORMAP, &red, &green, &blue)) {
    input_.Fail("the palette is missing");
  }
  const size_t count = FullColorCount(form_ == Form::kTwoBits ? 2 : uint32_t(info_.bits));
  uint16_t most = 0;
  for (const uint16_t* const channel : {red, green, blue}) {
    most = std::max(most, *std::max_element(channel, channel + count));
  }
  // Channels have 16 bits. Some old programs wrote 8, and then none is above.
  const auto level = [most](uint16_t value) {
    return most < 256 ? static_cast<uint8_t>(value) : To8(value);
  };
  info_.colors.assign(FullColorCount(static_cast<uint32_t>(info_.bits)), RGBQUAD{});
  for (size_t i = 0; i < count; ++i) {
    info_.colors[i] = {level(blue[i]), level(green[i]), level(red[i]), 0};
  }
}

void TiffReader::ReadRow(uint8_t* row) {
  const uint8_t* const raw = rows_->Next();
  switch (form_) {
    case Form::kReady:
      std::memcpy(row, raw, (static_cast<size_t>(info_.width) * size_t(info_.bits) + 7) / 8);
      break;
    case Form::kTwoBits:
      WidenTwoBits(raw, info_.width, grayStep_, row);
      break;
    case Form::kSamples8:
      inks_.empty() ? SamplesToKernelRow(raw, row) : InksToKernelRow(raw, row);
      break;
    case Form::kSamples16: {
      const auto* const words = reinterpret_cast<const uint16_t*>(raw);
      inks_.empty() ? SamplesToKernelRow(words, row) : InksToKernelRow(words, row);
      break;
    }
    case Form::kRgba:
      RgbaToKernelRow(reinterpret_cast<const uint32_t*>(raw), row);
      break;
  }
  ++row_;
}

template <class Sample>
void TiffReader::InksToKernelRow(const Sample* samples, uint8_t* row) {
  for (size_t i = 0; i < inks_.size(); i += 4, samples += samples_) {
    std::transform(samples, samples + 4, inks_.begin() + static_cast<ptrdiff_t>(i),
                   [](Sample sample) { return To8(sample); });
  }
  ShowInks(inks_.data(), info_.width, row);
}

template <class Sample>
void TiffReader::SamplesToKernelRow(const Sample* samples, uint8_t* row) const {
  const auto width = static_cast<size_t>(info_.width),
             channels = static_cast<size_t>(info_.bits / 8);
  // The samples that make blue, green and red, or gray.
  const size_t sources[3] = {colors_ - 1, colors_ / 2, 0};
  const int32_t unders[3] = {background_.blue, background_.green, background_.red};
  const auto lay = alpha_ == EXTRASAMPLE_ASSOCALPHA ? &LayShare : &Lay;
  const unsigned inversion = invert_ ? 0xFF : 0;
  for (size_t x = 0; x < width; ++x, samples += samples_, row += channels) {
    for (size_t i = 0; i < channels; ++i) {
      row[i] = static_cast<uint8_t>(To8(samples[sources[i]]) ^ inversion);
      if (alpha_) row[i] = lay(row[i], To8(samples[colors_]), unders[i]);
    }
  }
}

void TiffReader::RgbaToKernelRow(const uint32_t* pixels, uint8_t* row) const {
  const auto width = static_cast<size_t>(info_.width);
  for (size_t x = 0; x < width; ++x, row += 3) {
    const uint32_t alpha = TIFFGetA(pixels[x]);
    row[0] = LayShare(TIFFGetB(pixels[x]), alpha, background_.blue);
    row[1] = LayShare(TIFFGetG(pixels[x]), alpha, background_.green);
    row[2] = LayShare(TIFFGetR(pixels[x]), alpha, background_.red);
  }
}

}  // namespace vn::tool
