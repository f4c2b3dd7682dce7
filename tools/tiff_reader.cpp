#include "tools/tiff_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "tools/failure.h"
#include "tools/samples.h"

namespace vn::tool {
namespace {

constexpr size_t kMostBandBytes = size_t{32} << 20;
// Bands within a strip or tile begin at multiples of it, which suits all chroma subsampling.
constexpr int32_t kBandStep = 8;

tmsize_t OnRead(thandle_t handle, void* to, tmsize_t count) {
  auto* file = static_cast<InputFile*>(handle);
  const size_t read = file->ReadSome(to, static_cast<size_t>(count));
  return file->HasError() ? -1 : static_cast<tmsize_t>(read);
}

tmsize_t OnWrite(thandle_t, void*, tmsize_t) { return -1; }

toff_t OnSeek(thandle_t handle, toff_t offset, int whence) {
  return static_cast<toff_t>(
      static_cast<InputFile*>(handle)->Seek(static_cast<int64_t>(offset), whence));
}

toff_t OnSize(thandle_t handle) {
  auto* file = static_cast<InputFile*>(handle);
  const int64_t position = file->Seek(0, SEEK_CUR);
  const int64_t size = file->Seek(0, SEEK_END);
  file->Seek(position, SEEK_SET);
  return static_cast<toff_t>(std::max<int64_t>(size, 0));
}

int32_t DotsPerInch(float perUnit, uint16_t unit) {
  const float perInch = unit == RESUNIT_CENTIMETER ? perUnit * 2.54f : perUnit;
  const bool sensible = unit != RESUNIT_NONE && perInch >= 1 && perInch <= 1e6f;  // and no NaN
  return sensible ? static_cast<int32_t>(std::lround(perInch)) : 0;
}

template <class Value>
Value Field(TIFF* tiff, uint32_t tag) {
  Value value{};
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

bool IsFax(uint16_t compression) {
  return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW ||
         compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4;
}

}  // namespace

struct TiffReader::Header {
  uint32_t width, height;
  uint16_t bits, samples, format, compression, planes, orientation, photometric;
  bool tiled;

  bool Gray() const {
    return samples == 1 &&
           (photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK);
  }
  // The kernel's depths, and 2.
  bool Indexed() const {
    return samples == 1 && (bits == 1 || bits == 2 || bits == 4 || bits == 8) &&
           (Gray() || photometric == PHOTOMETRIC_PALETTE);
  }
  bool Rgb24() const {
    return samples == 3 && bits == 8 && photometric == PHOTOMETRIC_RGB &&
           planes == PLANARCONFIG_CONTIG;
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
    : file_(std::move(file)), background_(options.background) {
  if (file_->Seek(0, SEEK_SET) < 0) {
    throw Failure(file_->Path() + ": a TIFF file is not read in its order, so it cannot be a pipe");
  }
  tiff_ = OpenTiff(file_->Path(), "r", file_.get(), {&OnRead, &OnWrite, &OnSeek, &OnSize}, &error_);
  if (!tiff_) Fail();
  error_.text[0] = '\0';  // of fields that do not matter

  const Header header = ReadHeader();
  ChooseForm(header);
  // Before anyone allocates rows of that width.
  RequirePossibleSize(file_->Path(), header.width, header.height, info_.bits);
  info_.width = static_cast<int32_t>(header.width);
  info_.height = static_cast<int32_t>(header.height);
  TakeResolution();
  PrepareBands(header);
}

TiffReader::Header TiffReader::ReadHeader() {
  TIFF* const tiff = tiff_.get();
  Header header{};
  header.width = Field<uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
  header.height = Field<uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
  header.bits = Field<uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE);
  header.samples = Field<uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL);
  header.format = Field<uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT);
  header.compression = Field<uint16_t>(tiff, TIFFTAG_COMPRESSION);
  header.planes = Field<uint16_t>(tiff, TIFFTAG_PLANARCONFIG);
  header.orientation = Field<uint16_t>(tiff, TIFFTAG_ORIENTATION);
  header.tiled = TIFFIsTiled(tiff) != 0;
  if (!TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &header.photometric)) {
    header.photometric = header.samples >= 3         ? PHOTOMETRIC_RGB
                         : IsFax(header.compression) ? PHOTOMETRIC_MINISWHITE
                                                     : PHOTOMETRIC_MINISBLACK;
  }
  // libjpeg then gives colours, which are read as such.
  if (header.photometric == PHOTOMETRIC_YCBCR && header.compression == COMPRESSION_JPEG &&
      header.planes == PLANARCONFIG_CONTIG && header.samples == 3) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    header.photometric = PHOTOMETRIC_RGB;
  }
  return header;
}

void TiffReader::ChooseForm(const Header& header) {
  if (header.orientation != ORIENTATION_TOPLEFT && header.orientation != ORIENTATION_BOTLEFT) {
    throw Failure(file_->Path() + ": mirrored and turned pictures (orientation " +
                  std::to_string(header.orientation) + ") are not read");
  }
  bottomUp_ = header.orientation == ORIENTATION_BOTLEFT;

  const bool whole = header.format == SAMPLEFORMAT_UINT || header.format == SAMPLEFORMAT_VOID;
  if (whole && (header.Indexed() || header.Rgb24())) {
    supply_ = header.tiled ? Supply::kTiles : Supply::kStrips;
    const uint32_t pixelBits = uint32_t{header.bits} * header.samples;
    rawBytes_ = static_cast<size_t>((uint64_t{header.width} * pixelBits + 7) / 8);
    twoBits_ = pixelBits == 2;
    info_.bits = twoBits_ ? 4 : static_cast<int32_t>(pixelBits);
    if (header.Gray()) {
      TakeGrays(header.photometric == PHOTOMETRIC_MINISWHITE);
    } else if (header.Indexed()) {
      TakePalette();
    }
    return;
  }
  supply_ = Supply::kRaster;
  info_.bits = header.Gray() ? 8 : 24;
  if (header.Gray()) info_.colors = GrayRamp(256);  // libtiff turns it where white is 0
}

void TiffReader::TakeGrays(bool whiteIsZero) {
  info_.colors = GrayRamp(1 << info_.bits);
  if (whiteIsZero) std::reverse(info_.colors.begin(), info_.colors.end());
  if (twoBits_) grayStep_ = kGrayStepOfTwoBits;
}

void TiffReader::TakePalette() {
  const uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
  if (!TIFFGetField(tiff_.get(), TIFFTAG_COLORMAP, &red, &green, &blue)) {
    throw Failure(file_->Path() + ": the palette is missing");
  }
  const size_t count = FullColorCount(twoBits_ ? 2 : static_cast<uint32_t>(info_.bits));
  uint16_t most = 0;
  for (const uint16_t* const channel : {red, green, blue}) {
    most = std::max(most, *std::max_element(channel, channel + count));
  }
  // Channels have 16 bits. Some old programs wrote 8, and then none is above.
  const auto level = [most](uint16_t value) {
    return static_cast<uint8_t>(most < 256 ? value : (value * 255u + 32767) / 65535);
  };
  info_.colors.assign(FullColorCount(static_cast<uint32_t>(info_.bits)), RGBQUAD{});
  for (size_t i = 0; i < count; ++i) {
    info_.colors[i] = {level(blue[i]), level(green[i]), level(red[i]), 0};
  }
}

void TiffReader::TakeResolution() {
  TIFF* const tiff = tiff_.get();
  const auto unit = Field<uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT);
  info_.xDotsPerInch = DotsPerInch(Field<float>(tiff, TIFFTAG_XRESOLUTION), unit);
  info_.yDotsPerInch = DotsPerInch(Field<float>(tiff, TIFFTAG_YRESOLUTION), unit);
}

// A band is a strip or a row of tiles, or a part of it.
void TiffReader::PrepareBands(const Header& header) {
  TIFF* const tiff = tiff_.get();
  if (supply_ == Supply::kStrips) {
    // Damaged fields may disagree.
    if (TIFFScanlineSize64(tiff) != rawBytes_) {
      throw Failure(file_->Path() + ": the rows are not as long as the header says");
    }
    if (twoBits_) raw_.resize(rawBytes_);
    return;
  }
  if (supply_ == Supply::kRaster) PrepareRaster();

  const auto rows = header.tiled ? Field<uint32_t>(tiff, TIFFTAG_TILELENGTH)
                                 : Field<uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP);
  blockRows_ = static_cast<int32_t>(std::clamp(rows, 1u, header.height));
  const size_t rowBytes = supply_ == Supply::kTiles ? rawBytes_ : size_t{4} * header.width;
  const auto most = static_cast<int32_t>(std::min<size_t>(kMostBandBytes / rowBytes, INT32_MAX));
  mostBandRows_ = std::min(blockRows_, std::max(most / kBandStep, 1) * kBandStep);
  band_.resize((rowBytes * static_cast<size_t>(mostBandRows_) + 3) / 4);
  if (supply_ == Supply::kTiles) {
    const uint64_t size = TIFFTileSize64(tiff);
    const uint64_t promised = uint64_t{TIFFTileRowSize64(tiff)} * rows;
    if (size == 0 || size != promised || size > static_cast<uint64_t>(kMostTiffBlock)) {
      throw Failure(file_->Path() + ": impossible tiles");
    }
    tile_.resize(static_cast<size_t>(size));
  }
}

void TiffReader::PrepareRaster() {
  char text[1024] = "";
  constexpr int kStopAtErrors = 1;
  if (!TIFFRGBAImageOK(tiff_.get(), text) ||
      !TIFFRGBAImageBegin(&raster_.image, tiff_.get(), kStopAtErrors, text)) {
    throw Failure(file_->Path() + ": " + text);
  }
  raster_.begun = true;
  raster_.image.req_orientation = raster_.image.orientation;  // rows in the order of the file
}

void TiffReader::ReadRow(uint8_t* row) {
  if (supply_ == Supply::kStrips) {
    uint8_t* const to = twoBits_ ? raw_.data() : row;
    RequireSound(TIFFReadScanline(tiff_.get(), to, static_cast<uint32_t>(row_), 0) == 1);
    ToKernelRow(to, row);
  } else if (supply_ == Supply::kTiles) {
    ToKernelRow(BandRow(), row);
  } else {
    RasterToKernelRow(reinterpret_cast<const uint32_t*>(BandRow()), row);
  }
  ++row_;
}

// Row row_ in the band, which is read when it does not hold that row yet.
const uint8_t* TiffReader::BandRow() {
  if (row_ >= bandFirst_ + bandCount_) {
    const int32_t ofBlock = blockRows_ - row_ % blockRows_;
    bandFirst_ = row_;
    bandCount_ = std::min({mostBandRows_, ofBlock, info_.height - row_});
    supply_ == Supply::kTiles ? ReadTiles(bandCount_) : ReadRaster(bandCount_);
  }
  const size_t rowBytes =
      supply_ == Supply::kTiles ? rawBytes_ : size_t{4} * static_cast<size_t>(info_.width);
  return reinterpret_cast<const uint8_t*>(band_.data()) +
         rowBytes * static_cast<size_t>(row_ - bandFirst_);
}

// A tile's width is a multiple of 16 pixels: its rows begin at whole bytes at every depth.
void TiffReader::ReadTiles(int32_t count) {
  TIFF* const tiff = tiff_.get();
  const auto tileWidth = Field<uint32_t>(tiff, TIFFTAG_TILEWIDTH);
  const auto tileBytes = static_cast<size_t>(TIFFTileRowSize64(tiff));
  const auto skipped = static_cast<size_t>(row_ % blockRows_);
  auto* const band = reinterpret_cast<uint8_t*>(band_.data());
  size_t at = 0;
  for (uint32_t x = 0; at < rawBytes_; x += tileWidth, at += tileBytes) {
    RequireSound(TIFFReadTile(tiff, tile_.data(), x, static_cast<uint32_t>(row_), 0, 0) > 0);
    const size_t bytes = std::min(tileBytes, rawBytes_ - at);
    for (size_t y = 0; y < static_cast<size_t>(count); ++y) {
      std::memcpy(band + y * rawBytes_ + at, tile_.data() + (skipped + y) * tileBytes, bytes);
    }
  }
}

void TiffReader::ReadRaster(int32_t count) {
  raster_.image.row_offset = row_;
  raster_.image.col_offset = 0;
  RequireSound(TIFFRGBAImageGet(&raster_.image, band_.data(), static_cast<uint32_t>(info_.width),
                                static_cast<uint32_t>(count)) == 1);
}

void TiffReader::ToKernelRow(const uint8_t* raw, uint8_t* row) const {
  if (twoBits_) {
    WidenTwoBits(raw, info_.width, grayStep_, row);
  } else if (info_.bits == 24) {
    for (size_t i = 0; i < rawBytes_; i += 3) {
      const uint8_t red = raw[i], green = raw[i + 1], blue = raw[i + 2];  // `raw` may be `row`
      row[i] = blue;
      row[i + 1] = green;
      row[i + 2] = red;
    }
  } else if (raw != row) {
    std::memcpy(row, raw, rawBytes_);
  }
}

// libtiff multiplies colours by their alpha, but for 8-bit gray, which it leaves as it stands.
void TiffReader::RasterToKernelRow(const uint32_t* raster, uint8_t* row) const {
  const bool plain =
      raster_.image.alpha == EXTRASAMPLE_UNASSALPHA && raster_.image.samplesperpixel < 3;
  const auto laid = [plain](uint32_t over, uint32_t alpha, int32_t under) {
    if (plain) return Lay(over, alpha, under);
    return static_cast<uint8_t>(std::min(over + Lay(0, alpha, under), 255u));
  };
  const auto width = static_cast<size_t>(info_.width);
  for (size_t x = 0; x < width; ++x) {
    const uint32_t pixel = raster[x];
    if (info_.bits == 8) {
      row[x] = static_cast<uint8_t>(TIFFGetG(pixel));
      continue;
    }
    const uint32_t alpha = raster_.image.alpha ? TIFFGetA(pixel) : 255;
    row[3 * x] = laid(TIFFGetB(pixel), alpha, background_.blue);
    row[3 * x + 1] = laid(TIFFGetG(pixel), alpha, background_.green);
    row[3 * x + 2] = laid(TIFFGetR(pixel), alpha, background_.red);
  }
}

void TiffReader::Fail() const {
  const char* text = file_->HasError() ? file_->ErrorText() : error_.text;
  throw Failure(file_->Path() + ": " + (text[0] ? text : "the file is damaged"));
}

}  // namespace vn::tool
