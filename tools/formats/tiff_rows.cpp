#include "tools/formats/tiff_rows.h"

#include <algorithm>
#include <cstring>

namespace vn::tool {
namespace {

constexpr uint64_t kMostBandBytes = uint64_t{32} << 20;
// Bands within a strip or tile begin at multiples of it, which suits all chroma subsampling.
constexpr uint32_t kBandStep = 8;

uint32_t BlockRowsOf(const TiffInput& input, const TiffShape& shape) {
  const auto tag = shape.tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP;
  return std::clamp(input.Field<uint32_t>(tag), 1u, shape.height);
}

uint64_t PlainRowBytes(const TiffShape& shape) {
  return (uint64_t{shape.width} * shape.bits * shape.samples + 7) / 8;
}

class PlainRows : public TiffRows {
 public:
  PlainRows(const TiffInput& input, const TiffShape& shape);

 private:
  void Load(uint32_t first, uint32_t count, uint8_t* band) override;
  void LoadLines(uint16_t plane, uint32_t first, uint32_t count, uint8_t* band);
  void LoadTiles(uint16_t plane, uint32_t first, uint32_t count, uint8_t* band);
  void Place(const uint8_t* from, size_t bytes, uint16_t plane, size_t at, uint8_t* row) const;

  const uint16_t planes_;
  const size_t partBytes_;  // of a row in one plane
  size_t tileRowBytes_ = 0;
  std::vector<uint8_t> block_;  // a line of a plane, or a tile
};

PlainRows::PlainRows(const TiffInput& input, const TiffShape& shape)
    // Lines that follow each other need no band.
    : TiffRows(input, shape, PlainRowBytes(shape),
               shape.tiled || shape.planes ? BlockRowsOf(input, shape) : 1),
      planes_(shape.planes ? shape.samples : 1),
      partBytes_(rowBytes_ / planes_) {
  TIFF* const tiff = input.Get();
  if (!shape.tiled) {
    // Damaged fields may disagree.
    if (TIFFScanlineSize64(tiff) != partBytes_) input.Fail("impossible strips");
    block_.resize(partBytes_);
    return;
  }
  const uint64_t size = TIFFTileSize64(tiff);
  tileRowBytes_ = static_cast<size_t>(TIFFTileRowSize64(tiff));
  if (tileRowBytes_ == 0 || size > uint64_t{kMostTiffBlock} ||
      size != tileRowBytes_ * uint64_t{input.Field<uint32_t>(TIFFTAG_TILELENGTH)}) {
    input.Fail("impossible tiles");
  }
  block_.resize(static_cast<size_t>(size));
}

void PlainRows::Load(uint32_t first, uint32_t count, uint8_t* band) {
  for (uint16_t plane = 0; plane < planes_; ++plane) {
    if (shape_.tiled) {
      LoadTiles(plane, first, count, band);
    } else {
      LoadLines(plane, first, count, band);
    }
  }
}

void PlainRows::LoadLines(uint16_t plane, uint32_t first, uint32_t count, uint8_t* band) {
  for (uint32_t y = 0; y < count; ++y, band += rowBytes_) {
    uint8_t* const to = planes_ == 1 ? band : block_.data();
    input_.RequireSound(TIFFReadScanline(input_.Get(), to, first + y, plane) == 1);
    if (planes_ > 1) Place(to, partBytes_, plane, 0, band);
  }
}

// A tile's width is a multiple of 16 pixels: its rows begin at whole bytes at every depth.
void PlainRows::LoadTiles(uint16_t plane, uint32_t first, uint32_t count, uint8_t* band) {
  const auto tileWidth = input_.Field<uint32_t>(TIFFTAG_TILEWIDTH);
  const size_t skipped = first % blockRows_;
  size_t at = 0;
  for (uint32_t x = 0; at < partBytes_; x += tileWidth, at += tileRowBytes_) {
    input_.RequireSound(TIFFReadTile(input_.Get(), block_.data(), x, first, 0, plane) > 0);
    const size_t bytes = std::min(tileRowBytes_, partBytes_ - at);
    for (size_t y = 0; y < count; ++y) {
      Place(block_.data() + (skipped + y) * tileRowBytes_, bytes, plane, at, band + y * rowBytes_);
    }
  }
}

// Puts a piece of a plane's row, that begins there at byte `at`, between the other planes' samples.
void PlainRows::Place(const uint8_t* from, size_t bytes, uint16_t plane, size_t at,
                      uint8_t* row) const {
  if (planes_ == 1) {
    std::memcpy(row + at, from, bytes);
    return;
  }
  const size_t sampleBytes = shape_.bits / 8u;
  uint8_t* to = row + at * planes_ + plane * sampleBytes;
  for (size_t i = 0; i < bytes; i += sampleBytes, to += planes_ * sampleBytes) {
    std::memcpy(to, from + i, sampleBytes);
  }
}

class RgbaRows : public TiffRows {
 public:
  RgbaRows(const TiffInput& input, const TiffShape& shape);
  ~RgbaRows() override {
    if (begun_) TIFFRGBAImageEnd(&image_);
  }
  void Begin();

 private:
  void Load(uint32_t first, uint32_t count, uint8_t* band) override;

  TIFFRGBAImage image_{};
  bool begun_ = false;
};

RgbaRows::RgbaRows(const TiffInput& input, const TiffShape& shape)
    : TiffRows(input, shape, uint64_t{shape.width} * 4, BlockRowsOf(input, shape)) {}

void RgbaRows::Begin() {
  char text[1024] = "";
  constexpr int kStopAtErrors = 1;
  begun_ = TIFFRGBAImageOK(input_.Get(), text) &&
           TIFFRGBAImageBegin(&image_, input_.Get(), kStopAtErrors, text);
  MakeOneLine(text);
  if (!begun_) input_.Fail(text);
  image_.req_orientation = image_.orientation;  // rows in the order of the file
}

void RgbaRows::Load(uint32_t first, uint32_t count, uint8_t* band) {
  image_.row_offset = static_cast<int>(first);
  auto* const pixels = reinterpret_cast<uint32_t*>(band);
  input_.RequireSound(TIFFRGBAImageGet(&image_, pixels, shape_.width, count) == 1);
}

}  // namespace

TiffRows::TiffRows(const TiffInput& input, const TiffShape& shape, uint64_t rowBytes,
                   uint32_t blockRows)
    : input_(input),
      shape_(shape),
      rowBytes_(static_cast<size_t>(rowBytes)),
      blockRows_(blockRows) {
  // A pixel may claim any number of samples.
  if (rowBytes > kMostBandBytes) input.Fail("impossible rows");
  const uint64_t steps = std::max<uint64_t>(kMostBandBytes / rowBytes / kBandStep, 1);
  bandRows_ = static_cast<uint32_t>(std::min<uint64_t>(blockRows, steps * kBandStep));
  band_.resize((rowBytes_ * bandRows_ + 3) / 4);
}

const uint8_t* TiffRows::Next() {
  auto* const band = reinterpret_cast<uint8_t*>(band_.data());
  if (row_ == bandFirst_ + bandCount_) {
    bandCount_ = std::min({bandRows_, blockRows_ - row_ % blockRows_, shape_.height - row_});
    bandFirst_ = row_;
    Load(bandFirst_, bandCount_, band);
  }
  return band + rowBytes_ * (row_++ - bandFirst_);
}

std::unique_ptr<TiffRows> MakePlainRows(const TiffInput& input, const TiffShape& shape) {
  return std::make_unique<PlainRows>(input, shape);
}

std::unique_ptr<TiffRows> MakeRgbaRows(const TiffInput& input, const TiffShape& shape) {
  auto rows = std::make_unique<RgbaRows>(input, shape);
  rows->Begin();
  return rows;
}

}  // namespace vn::tool
