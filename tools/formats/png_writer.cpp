#include "tools/formats/png_writer.h"

#include "tools/formats/color_profile.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

void OnWrite(png_structp png, png_bytep bytes, size_t count) {
  auto* file = static_cast<OutputFile*>(png_get_io_ptr(png));
  if (!file->Write(bytes, count)) png_error(png, file->ErrorText());
}

void OnFlush(png_structp) {}

png_uint_32 DotsPerMeter(int32_t perInch) {
  return static_cast<png_uint_32>((int64_t{perInch} * 10000 + 127) / 254);
}

}  // namespace

PngWriter::State::State()
    : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, &error, &OnPngError, &OnPngWarning)),
      info(png ? png_create_info_struct(png) : nullptr) {
  if (!info) {
    png_destroy_write_struct(&png, &info);
    throw Failure("there is not enough memory to write a picture");
  }
}

PngWriter::PngWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info,
                     std::optional<int32_t> level)
    // Profiles of gray are for gray, which a palette is not.
    : file_(std::move(file)),
      gray_(SpaceOf(info.metadata.profile) == ProfileSpace::kGray && IsGrayRamp(info.colors)),
      texts_(info.metadata, gray_),
      data_((static_cast<size_t>(info.width) * static_cast<size_t>(info.bits) + 7) / 8,
            info.bits == 24, level, this) {
  WriteHeader(info);
}

void PngWriter::WriteHeader(const PictureInfo& picture) {
  png_color palette[256] = {};
  const auto count = static_cast<int>(picture.colors.size());
  for (int i = 0; i < count; ++i) {
    const RGBQUAD& from = picture.colors[static_cast<size_t>(i)];
    palette[i] = {from.rgbRed, from.rgbGreen, from.rgbBlue};
  }
  const png_structp png = state_.png;
  const png_infop info = state_.info;
  OutputFile* const file = file_.get();
  const PngTexts* const texts = &texts_;
  const bool paletted = picture.bits <= 8, gray = gray_;
  const bool written = GuardPng(png, [=, &palette, &picture] {
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_write_fn(png, file, &OnWrite, &OnFlush);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width),
                 static_cast<png_uint_32>(picture.height), paletted ? picture.bits : 8,
                 gray       ? PNG_COLOR_TYPE_GRAY
                 : paletted ? PNG_COLOR_TYPE_PALETTE
                            : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (paletted && !gray) png_set_PLTE(png, info, palette, count);
    if (picture.xDotsPerInch > 0 && picture.yDotsPerInch > 0) {
      png_set_pHYs(png, info, DotsPerMeter(picture.xDotsPerInch),
                   DotsPerMeter(picture.yDotsPerInch), PNG_RESOLUTION_METER);
    }
    texts->Set(png, info);
    png_write_info(png, info);
  });
  if (!written) Fail();
}

void PngWriter::WriteRow(const uint8_t* row) { data_.WriteRow(row); }

void PngWriter::WriteData(const uint8_t* bytes, size_t count) { WriteChunk("IDAT", bytes, count); }

void PngWriter::WriteChunk(const char* name, const uint8_t* bytes, size_t count) {
  const png_structp png = state_.png;
  if (!GuardPng(png, [=] {
        png_write_chunk(png, reinterpret_cast<png_const_bytep>(name), bytes, count);
      }))
    Fail();
}

void PngWriter::Finish() {
  data_.Finish();
  // libpng does not end a file whose pixels it has not seen.
  WriteChunk("IEND", nullptr, 0);
  file_->Commit();
}

void PngWriter::Fail() const {
  throw Failure("cannot write " + file_->Path() + ": " + state_.error.text);
}

}  // namespace vn::tool
