#include "tools/formats/tiff_writer.h"

#include <algorithm>

#include "tools/formats/tiff_texts.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr uint64_t kStripBytes = 65536;
// Larger pictures take the form with 64-bit offsets: LZW may make data longer by almost a half.
constexpr double kMostClassicBytes = 2800.0 * (1 << 20);

// A page is chained to the one before, which is read again for that.
tmsize_t OnRead(thandle_t handle, void* to, tmsize_t count) {
  return static_cast<OutputFile*>(handle)->Read(to, static_cast<size_t>(count)) ? count : -1;
}

tmsize_t OnWrite(thandle_t handle, void* bytes, tmsize_t count) {
  return static_cast<OutputFile*>(handle)->Write(bytes, static_cast<size_t>(count)) ? count : -1;
}

toff_t OnSeek(thandle_t handle, toff_t offset, int whence) {
  return static_cast<toff_t>(
      static_cast<OutputFile*>(handle)->Seek(static_cast<int64_t>(offset), whence));
}

toff_t OnSize(thandle_t) { return 0; }  // asked for in files that are read

uint16_t PhotometricOf(const PictureInfo& info) {
  if (info.bits > 8) return PHOTOMETRIC_RGB;
  if (IsGrayRamp(info.colors)) return PHOTOMETRIC_MINISBLACK;
  const std::vector<RGBQUAD> turned(info.colors.rbegin(), info.colors.rend());
  return IsGrayRamp(turned) ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_PALETTE;
}

uint64_t RowBytes(const PictureInfo& info) {
  return (static_cast<uint64_t>(info.width) * static_cast<uint64_t>(info.bits) + 7) / 8;
}

}  // namespace

TiffWriter::TiffWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info, int32_t pages)
    : file_(std::move(file)), pages_(pages) {
  // Further pages are taken to be like the first.
  const double bytes = static_cast<double>(RowBytes(info)) * info.height * pages;
  tiff_ = OpenTiff(file_->Path(), bytes > kMostClassicBytes ? "w8" : "w", file_.get(),
                   {&OnRead, &OnWrite, &OnSeek, &OnSize}, &error_);
  if (!tiff_) Fail();
  BeginPage(info);
}

void TiffWriter::BeginPage(const PictureInfo& info) {
  color_ = info.bits > 8;
  row_.resize(static_cast<size_t>(RowBytes(info)));
  line_ = 0;
  ++page_;
  WriteHeader(info);
  if (pages_ == 1) return;
  Set(TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
  RequireDone(TIFFSetField(tiff_.get(), TIFFTAG_PAGENUMBER, page_ - 1, pages_) == 1);
}

void TiffWriter::NextPage(const PictureInfo& info) {
  RequireDone(TIFFWriteDirectory(tiff_.get()) == 1);
  BeginPage(info);
}

void TiffWriter::WriteHeader(const PictureInfo& info) {
  const uint16_t photometric = PhotometricOf(info);
  const bool paletted = photometric == PHOTOMETRIC_PALETTE;
  const bool fax = info.bits == 1 && !paletted;
  Set(TIFFTAG_IMAGEWIDTH, info.width);
  Set(TIFFTAG_IMAGELENGTH, info.height);
  Set(TIFFTAG_BITSPERSAMPLE, color_ ? 8 : info.bits);
  Set(TIFFTAG_SAMPLESPERPIXEL, color_ ? 3 : 1);
  Set(TIFFTAG_PHOTOMETRIC, photometric);
  Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  Set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  Set(TIFFTAG_ROWSPERSTRIP, static_cast<int>(std::max<uint64_t>(kStripBytes / row_.size(), 1)));
  Set(TIFFTAG_COMPRESSION, fax ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW);
  // Differences do not compress indexes.
  if (info.bits >= 8 && !paletted) Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  if (paletted) WritePalette(info.colors);
  RequireDone(WriteTiffTexts(tiff_.get(), info.metadata, !color_ && !paletted, &room_));
  if (info.xDotsPerInch > 0 && info.yDotsPerInch > 0) {
    Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    RequireDone(TIFFSetField(tiff_.get(), TIFFTAG_XRESOLUTION, double(info.xDotsPerInch)) == 1);
    RequireDone(TIFFSetField(tiff_.get(), TIFFTAG_YRESOLUTION, double(info.yDotsPerInch)) == 1);
  }
}

void TiffWriter::WritePalette(const std::vector<RGBQUAD>& colors) {
  std::vector<uint16_t> red, green, blue;
  for (const RGBQUAD& color : colors) {
    red.push_back(static_cast<uint16_t>(color.rgbRed * 257));
    green.push_back(static_cast<uint16_t>(color.rgbGreen * 257));
    blue.push_back(static_cast<uint16_t>(color.rgbBlue * 257));
  }
  RequireDone(TIFFSetField(tiff_.get(), TIFFTAG_COLORMAP, red.data(), green.data(), blue.data()) ==
              1);
}

// Integer fields of 16 and of 32 bits are passed alike.
void TiffWriter::Set(uint32_t tag, int value) {
  RequireDone(TIFFSetField(tiff_.get(), tag, value) == 1);
}

void TiffWriter::WriteRow(const uint8_t* row) {
  if (color_) {
    for (size_t i = 0; i < row_.size(); i += 3) {
      row_[i] = row[i + 2];
      row_[i + 1] = row[i + 1];
      row_[i + 2] = row[i];
    }
  } else {
    std::copy_n(row, row_.size(), row_.data());
  }
  RequireDone(TIFFWriteScanline(tiff_.get(), row_.data(), line_++, 0) == 1);
}

void TiffWriter::Finish() {
  RequireDone(TIFFWriteDirectory(tiff_.get()) == 1);
  tiff_.reset();
  RequireDone(true);
  file_->Commit();
}

void TiffWriter::Fail() const {
  const char* text = file_->HasError() ? file_->ErrorText() : error_.text;
  throw Failure("cannot write " + file_->Path() + ": " + (text[0] ? text : "libtiff gave up"));
}

}  // namespace vn::tool
