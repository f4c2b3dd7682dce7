#include "tools/formats/vips_reader.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <utility>
#include <vector>

#include "tools/formats/colors.h"
#include "tools/formats/samples.h"
#include "tools/formats/vips_library.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr int kBandRows = 32;  // asked for at once

const VipsLibrary& Vips() { return *VipsLibrary::Get(); }

// What the library says of its last failure, in one line.
std::string ErrorText() {
  std::string text = Readable(Vips().vips_error_buffer());
  Vips().vips_error_clear();
  text.erase(text.find_last_not_of(' ') + 1);
  return text.empty() ? "libvips cannot read it" : text;
}

// Formats that are read here, and here alone, without a file that is damaged being shown as far as it
// goes; and tables of numbers, which are told by their name.
bool IsRefused(const std::string& loader) {
  for (const char* const refused : {"Png", "Jpeg", "Tiff", "Ppm", "Csv", "Matrix", "Raw"}) {
    if (loader.find(std::string("Load") + refused) != loader.npos) return true;
  }
  return false;
}

std::string BlobOf(VipsImage* image, const char* name) {
  const void* bytes = nullptr;
  size_t size = 0;
  if (!Vips().vips_image_get_typeof(image, name) ||
      Vips().vips_image_get_blob(image, name, &bytes, &size) != 0)
    return {};
  return {static_cast<const char*>(bytes), size};
}

// "webpload_source" as "WEBP"; behind one loader stand many formats.
std::string FormatOf(VipsImage* image) {
  const char* loader = "";
  for (const char* const field : {"magick-format", VIPS_META_LOADER}) {
    if (!Vips().vips_image_get_typeof(image, field)) continue;
    Vips().vips_image_get_string(image, field, &loader);
    break;
  }
  std::string name(loader);
  name.resize(std::min(name.find("load"), name.size()));
  for (char& c : name)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return name;
}

int32_t DotsPerInch(double perMillimetre) {
  const double dots = perMillimetre * 25.4;
  return dots >= 1 && dots <= 1e6 ? static_cast<int32_t>(std::lround(dots)) : 0;
}

class VipsReader : public PictureSource {
 public:
  VipsReader(std::string path, VipsOwned<VipsImage> image, const ReadOptions& options)
      : path_(std::move(path)), background_(options.background) {
    TakeFacts(image.get());
    SettleOrientation(options, info_);
    image_ = InSamples(std::move(image));
    const int bands = image_->Bands;
    alpha_ = bands % 2 == 0;
    gray_ = bands <= 2;
    const bool grayBackground =
        background_.red == background_.green && background_.green == background_.blue;
    info_.bits = gray_ && (!alpha_ || grayBackground) ? 8 : 24;
    if (info_.bits == 8) info_.colors = GrayRamp(256);
    info_.width = image_->Xsize;
    info_.height = image_->Ysize;
    info_.facts.alpha = alpha_;
    RequirePossibleSize(path_, info_.width, info_.height, info_.bits);
    if (options.srgb) toSrgb_ = TakeToSrgb(path_, info_.metadata, Samples());
    colors_.resize(static_cast<size_t>(info_.width) * static_cast<size_t>(bands));
    region_.reset(Vips().vips_region_new(image_.get()));
    if (!region_) Fail();
  }

  const PictureInfo& Info() const override { return info_; }
  int32_t NextLine() const override { return line_; }

  void ReadRow(uint8_t* row) override {
    if (line_ % kBandRows == 0) {
      const VipsRect band{0, line_, info_.width, std::min(kBandRows, info_.height - line_)};
      if (Vips().vips_region_prepare(region_.get(), &band) != 0) Fail();
    }
    // Samples are bytes; what was prepared may lie within more.
    const VipsRegion& region = *region_;
    const ptrdiff_t left = ptrdiff_t{region.valid.left} * image_->Bands;
    const VipsPel* const from =
        region.data + ptrdiff_t{line_ - region.valid.top} * region.bpl - left;
    std::copy_n(from, colors_.size(), colors_.data());
    ++line_;
    const auto bands = static_cast<size_t>(image_->Bands);
    for (size_t i = 0; !gray_ && i < colors_.size(); i += bands)
      std::swap(colors_[i], colors_[i + 2]);
    if (toSrgb_) toSrgb_->Apply(colors_.data(), colors_.data(), static_cast<size_t>(info_.width));
    ToKernelRow(row);
  }

 private:
  void TakeFacts(VipsImage* image) {
    FileFacts& facts = info_.facts;
    facts.format = FormatOf(image);
    facts.model = Vips().vips_enum_nick(Vips().vips_interpretation_get_type(), image->Type);
    facts.sampleBits = static_cast<int32_t>(8 * Vips().vips_format_sizeof(image->BandFmt));
    // JPEG 2000 has one; what is counted there are its reductions.
    facts.pages = facts.format == "JP2K" ? 1 : Vips().vips_image_get_n_pages(image);
    facts.orientation = Vips().vips_image_get_orientation(image);
    if (image->Xres != 1 || image->Yres != 1) {  // which stands for nothing told
      info_.xDotsPerInch = DotsPerInch(image->Xres);
      info_.yDotsPerInch = DotsPerInch(image->Yres);
    }
    Metadata& metadata = info_.metadata;
    metadata.profile = BlobOf(image, VIPS_META_ICC_NAME);
    metadata.xmp = BlobOf(image, VIPS_META_XMP_NAME);
    const std::string exif = BlobOf(image, VIPS_META_EXIF_NAME);
    const size_t start = exif.starts_with(std::string("Exif\0\0", 6)) ? 6 : 0;
    ExifBlock block =
        ReadExif(reinterpret_cast<const uint8_t*>(exif.data()) + start, exif.size() - start);
    if (!block.fields.Empty()) TakeExif(std::move(block), metadata);
  }

  // Gray or colours of 8 bits, and alpha where there is one.
  VipsOwned<VipsImage> InSamples(VipsOwned<VipsImage> image) {
    // These leave the space that a profile is of.
    if (image->Type == VIPS_INTERPRETATION_CMYK || image->Type == VIPS_INTERPRETATION_LAB)
      DropProfile(info_.metadata);
    const bool gray = image->Bands <= 2 && (image->Type == VIPS_INTERPRETATION_B_W ||
                                            image->Type == VIPS_INTERPRETATION_GREY16 ||
                                            image->Type == VIPS_INTERPRETATION_MULTIBAND);
    const auto wanted = gray ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB;
    VipsImage* colors = nullptr;
    if (Vips().vips_colourspace(image.get(), &colors, wanted, nullptr) != 0) Fail();
    const VipsOwned<VipsImage> shown(colors);
    VipsImage* bytes = nullptr;
    if (Vips().vips_cast_uchar(shown.get(), &bytes, nullptr) != 0) Fail();
    VipsOwned<VipsImage> samples(bytes);
    if (samples->Bands <= 4) return samples;
    VipsImage* first = nullptr;
    if (Vips().vips_extract_band(samples.get(), &first, 0, "n", 4, nullptr) != 0) Fail();
    return VipsOwned<VipsImage>(first);
  }

  ToSrgb::Samples Samples() const {
    if (gray_) return alpha_ ? ToSrgb::Samples::kGrayAlpha : ToSrgb::Samples::kGray;
    return alpha_ ? ToSrgb::Samples::kBgra : ToSrgb::Samples::kBgr;
  }

  void ToKernelRow(uint8_t* row) const {
    const auto bands = static_cast<size_t>(image_->Bands), channels = size_t(info_.bits / 8);
    const int32_t unders[3] = {background_.blue, background_.green, background_.red};
    for (const uint8_t* from = colors_.data(); from != colors_.data() + colors_.size();
         from += bands, row += channels) {
      for (size_t i = 0; i < channels; ++i) {
        const uint8_t over = from[gray_ ? 0 : i];
        row[i] = alpha_ ? Lay(over, from[bands - 1], unders[i]) : over;
      }
    }
  }

  [[noreturn]] void Fail() const { throw Failure(path_ + ": " + ErrorText()); }

  const std::string path_;
  const Rgb background_;
  PictureInfo info_;
  VipsOwned<VipsImage> image_;
  VipsOwned<VipsRegion> region_;
  bool alpha_ = false, gray_ = false;
  std::unique_ptr<ToSrgb> toSrgb_;
  std::vector<uint8_t> colors_;  // a row as libvips gives it, blue first
  int32_t line_ = 0;
};

// An image whose rows come as they are asked for, or null for a file that is no picture. Throws
// Failure for a damaged one.
VipsOwned<VipsImage> OpenImage(const InputFile& file, const std::string& options) {
  const std::string path = file.Path();
  const VipsOwned<VipsSource> source(file.IsStandardInput()
                                         ? Vips().vips_source_new_from_descriptor(STDIN_FILENO)
                                         : Vips().vips_source_new_from_file(path.c_str()));
  const char* const loader = source ? Vips().vips_foreign_find_load_source(source.get()) : nullptr;
  // Some loaders take files by name alone.
  const char* const byName =
      loader || file.IsStandardInput() ? nullptr : Vips().vips_foreign_find_load(path.c_str());
  if (!(loader || byName) || IsRefused(loader ? loader : byName)) {
    Vips().vips_error_clear();
    return nullptr;
  }
  VipsImage* const image =
      loader ? Vips().vips_image_new_from_source(source.get(), options.c_str(), "access",
                                                 VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                                 VIPS_FAIL_ON_ERROR, nullptr)
             : Vips().vips_image_new_from_file((path + "[" + options + "]").c_str(), "access",
                                               VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                               VIPS_FAIL_ON_ERROR, nullptr);
  if (!image) throw Failure(path + ": " + ErrorText());
  return VipsOwned<VipsImage>(image);
}

}  // namespace

std::unique_ptr<PictureSource> OpenByVips(std::unique_ptr<InputFile> file,
                                          const ReadOptions& options) {
  if (!VipsLibrary::Get()) return nullptr;
  file->Rewind();  // standard input is in a file then
  auto image = OpenImage(
      *file, options.page > 1 ? "page=" + std::to_string(options.page - 1) : std::string());
  if (!image) return nullptr;
  return std::make_unique<VipsReader>(file->Path(), std::move(image), options);
}

}  // namespace vn::tool
