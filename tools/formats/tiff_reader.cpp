#include "tools/formats/tiff_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tools/formats/samples.h"
#include "tools/formats/tiff_texts.h"

namespace vn::tool {
namespace {

using Kind = TiffHeader::Kind;

constexpr uint8_t To8(uint8_t sample) { return sample; }
constexpr uint8_t To8(uint16_t sample) { return static_cast<uint8_t>((sample + 128) / 257); }

// The samples of Lab as ShowLab wants them. TIFF 6.0, section 23; Adobe's TIFF technical note 4,
// whose lightness of 16 bits ends at FF00.
void TakeLab(const uint8_t* samples, bool icc, uint16_t* lab) {
  const unsigned offset = icc ? 128 : 0;
  lab[0] = static_cast<uint16_t>(samples[0] * 257);
  lab[1] = static_cast<uint16_t>((samples[1] - offset) << 8);
  lab[2] = static_cast<uint16_t>((samples[2] - offset) << 8);
}
void TakeLab(const uint16_t* samples, bool icc, uint16_t* lab) {
  const unsigned offset = icc ? 0x8000 : 0;
  lab[0] = icc ? static_cast<uint16_t>(std::min(samples[0] * 257u / 256, 0xFFFFu)) : samples[0];
  lab[1] = static_cast<uint16_t>(samples[1] - offset);
  lab[2] = static_cast<uint16_t>(samples[2] - offset);
}

}  // namespace

bool IsTiff(const InputFile& file) {
  if (file.HeadCount() < 4) return false;
  for (const char* const head : {"II*\0", "MM\0*", "II+\0", "MM\0+"}) {
    if (std::memcmp(file.Head(), head, 4) == 0) return true;
  }
  return false;
}

TiffReader::TiffReader(std::unique_ptr<InputFile> file, const ReadOptions& options)
    : input_(std::move(file), options.page), background_(options.background), header_(input_) {
  const TiffShape& shape = header_.shape;
  info_.facts = header_.Facts();
  info_.facts.pages = input_.Pages();
  info_.metadata = ReadTiffTexts(input_.Get());
  info_.xDotsPerInch = header_.xDotsPerInch;
  info_.yDotsPerInch = header_.yDotsPerInch;
  SettleOrientation(options, info_);
  // Upside down is as easily read as not.
  bottomUp_ = info_.orientation == ORIENTATION_BOTLEFT;
  if (bottomUp_) info_.orientation = 1;
  // Before anyone allocates rows of that width; again, once the depth is known.
  RequirePossibleSize(input_.Path(), shape.width, shape.height, 1);
  ChooseForm();
  RequirePossibleSize(input_.Path(), shape.width, shape.height, info_.bits);
  info_.width = static_cast<int32_t>(shape.width);
  info_.height = static_cast<int32_t>(shape.height);
  ChooseColors(options);
}

void TiffReader::ChooseForm() {
  info_.bits = 24;
  switch (header_.kind) {
    case Kind::kIndexes: {
      const bool twoBits = header_.shape.bits == 2;
      form_ = twoBits ? Form::kTwoBits : Form::kReady;
      info_.bits = twoBits ? 4 : header_.shape.bits;
      header_.photometric == PHOTOMETRIC_PALETTE ? TakePalette() : TakeGrays(header_.WhiteIsZero());
      break;
    }
    case Kind::kGray:
      form_ = Form::kSamples;
      ChooseGrays();
      break;
    case Kind::kOther:
      break;
    default:
      form_ = Form::kSamples;
  }
}

void TiffReader::ChooseGrays() {
  const bool grayBackground =
      background_.red == background_.green && background_.green == background_.blue;
  invert_ = header_.alpha && header_.WhiteIsZero();
  if (header_.alpha && !grayBackground) return;
  info_.bits = 8;
  TakeGrays(header_.WhiteIsZero() && !invert_);
}

void TiffReader::ChooseColors(const ReadOptions& options) {
  if (header_.kind == Kind::kInks) {
    inks_ = std::make_unique<Inks>(info_.metadata);
    inkRow_.resize(size_t{4} * header_.shape.width);
  } else if (header_.kind == Kind::kLab) {
    float* white = nullptr;
    const bool told = TIFFGetField(input_.Get(), TIFFTAG_WHITEPOINT, &white) && white;
    lab_ = told ? std::make_unique<Lab>(white[0], white[1]) : std::make_unique<Lab>(0, 0);
    DropProfile(info_.metadata);
    labRow_.resize(size_t{3} * header_.shape.width);
  } else if (options.srgb && !info_.colors.empty() && !header_.alpha) {
    PaletteToSrgb(input_.Path(), info_);
  } else if (options.srgb) {
    toSrgb_ = TakeToSrgb(input_.Path(), info_.metadata,
                         info_.bits == 8 ? ToSrgb::Samples::kGray : ToSrgb::Samples::kBgr);
  }
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
  if (!rows_) {
    rows_ = form_ == Form::kRgba ? MakeRgbaRows(input_, header_.shape)
                                 : MakePlainRows(input_, header_.shape);
  }
  const uint8_t* const raw = rows_->Next();
  switch (form_) {
    case Form::kReady:
      std::memcpy(row, raw, (static_cast<size_t>(info_.width) * size_t(info_.bits) + 7) / 8);
      break;
    case Form::kTwoBits:
      WidenTwoBits(raw, info_.width, grayStep_, row);
      break;
    case Form::kSamples:
      header_.shape.bits == 8 ? SamplesToKernelRow(raw, row)
                              : SamplesToKernelRow(reinterpret_cast<const uint16_t*>(raw), row);
      break;
    case Form::kRgba:
      RgbaToKernelRow(reinterpret_cast<const uint32_t*>(raw), row);
      if (toSrgb_) toSrgb_->Apply(row, row, static_cast<size_t>(info_.width));
      break;
  }
  ++row_;
}

template <class Sample>
void TiffReader::ShowColors(const Sample* samples, uint8_t* row) {
  const auto width = static_cast<size_t>(info_.width), step = size_t{header_.shape.samples};
  if (inks_) {
    for (size_t i = 0; i < inkRow_.size(); ++i)
      inkRow_[i] = To8(samples[i / 4 * step + i % 4]);
    return inks_->Show(inkRow_.data(), row, width);
  }
  if (lab_) {
    const bool icc = header_.photometric == PHOTOMETRIC_ICCLAB;
    for (size_t x = 0; x < width; ++x)
      TakeLab(samples + x * step, icc, labRow_.data() + 3 * x);
    return lab_->Show(labRow_.data(), row, width);
  }
  // The samples that make blue, green and red, or gray.
  const size_t colors = header_.Colors(), channels = static_cast<size_t>(info_.bits / 8);
  const size_t sources[3] = {colors - 1, colors / 2, 0};
  const unsigned inversion = invert_ ? 0xFF : 0;
  for (size_t x = 0; x < width; ++x, samples += step, row += channels) {
    for (size_t i = 0; i < channels; ++i)
      row[i] = static_cast<uint8_t>(To8(samples[sources[i]]) ^ inversion);
  }
}

template <class Sample>
void TiffReader::SamplesToKernelRow(const Sample* samples, uint8_t* row) {
  ShowColors(samples, row);
  const auto width = static_cast<size_t>(info_.width), channels = size_t(info_.bits / 8);
  if (toSrgb_) toSrgb_->Apply(row, row, width);
  if (!header_.alpha) return;
  const int32_t unders[3] = {background_.blue, background_.green, background_.red};
  const auto lay = header_.alpha == EXTRASAMPLE_ASSOCALPHA ? &LayShare : &Lay;
  samples += header_.Colors();
  for (size_t x = 0; x < width; ++x, samples += header_.shape.samples, row += channels) {
    for (size_t i = 0; i < channels; ++i)
      row[i] = lay(row[i], To8(*samples), unders[i]);
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
