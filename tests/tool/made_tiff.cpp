#include "tests/tool/made_tiff.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>

namespace vn::test {
namespace {

constexpr int32_t kRowsPerStrip = 4, kTileWidth = 32, kTileHeight = 16;

void Require(bool done) {
  if (!done) throw std::logic_error("libtiff cannot write the test's picture");
}

}  // namespace

MadeTiff::MadeTiff(const TiffKind& kind, int32_t width, int32_t height, Random& random)
    : kind_(kind), width_(width), height_(height) {
  const int32_t most = (1 << kind.depth) - 1;
  for (int64_t pixel = 0; pixel < int64_t{width} * height; ++pixel) {
    const int32_t alpha = random.Between(0, most);
    const int32_t brightest = kind.alpha == EXTRASAMPLE_ASSOCALPHA ? alpha : most;
    for (int i = 0; i < kind.colors; ++i) {
      samples_.push_back(static_cast<uint16_t>(random.Between(0, brightest)));
    }
    if (kind.alpha) samples_.push_back(static_cast<uint16_t>(alpha));
  }
  if (kind.photometric == PHOTOMETRIC_PALETTE) {
    for (int i = 0; i < 3 << kind.depth; ++i) {
      palette_.push_back(static_cast<uint16_t>(random.Between(0, 255) * 257));
    }
  }
}

int32_t MadeTiff::SampleAt(int32_t x, int32_t y, int sample) const {
  return samples_[static_cast<size_t>((int64_t{y} * width_ + x) * Samples() + sample)];
}

// Rows of `samples` samples a pixel, zeros beyond the picture's edges.
std::vector<uint8_t> MadeTiff::Block(int32_t left, int32_t top, int32_t width, int32_t height,
                                     int firstSample, int samples) const {
  const auto depth = static_cast<size_t>(kind_.depth);
  const size_t rowBytes =
      (static_cast<size_t>(width) * static_cast<size_t>(samples) * depth + 7) / 8;
  std::vector<uint8_t> block(rowBytes * static_cast<size_t>(height));
  for (int32_t y = 0; y < height && top + y < height_; ++y) {
    uint8_t* const row = block.data() + rowBytes * static_cast<size_t>(y);
    for (int32_t x = 0; x < width && left + x < width_; ++x) {
      for (int i = 0; i < samples; ++i) {
        const auto value = static_cast<uint32_t>(SampleAt(left + x, top + y, firstSample + i));
        const auto at = static_cast<size_t>(x * samples + i);
        if (depth == 16) {
          StoreWord(row + 2 * at, value);
        } else {
          row[at * depth / 8] |= static_cast<uint8_t>(value << (8 - depth - at * depth % 8));
        }
      }
    }
  }
  return block;
}

void MadeTiff::SetFields(TIFF* tiff, const TiffLayout& layout) const {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width_);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height_);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind_.depth);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, Samples());
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind_.photometric);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind_.compression);
  if (kind_.compression == COMPRESSION_CCITTFAX3) {
    TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, GROUP3OPT_2DENCODING | GROUP3OPT_FILLBITS);
  }
  if (kind_.photometric == PHOTOMETRIC_YCBCR) {
    TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
  }
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
               layout.planes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION,
               layout.bottomUp ? ORIENTATION_BOTLEFT : ORIENTATION_TOPLEFT);
  TIFFSetField(tiff, TIFFTAG_FILLORDER, layout.lowBitFirst ? FILLORDER_LSB2MSB : FILLORDER_MSB2LSB);
  TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 118.11);
  TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 59.06);
  TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER);
  if (kind_.alpha) {
    const auto alpha = static_cast<uint16_t>(kind_.alpha);
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  }
  if (!palette_.empty()) {
    const size_t count = palette_.size() / 3;
    TIFFSetField(tiff, TIFFTAG_COLORMAP, palette_.data(), palette_.data() + count,
                 palette_.data() + 2 * count);
  }
  if (layout.tiled) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTileWidth);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTileHeight);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kRowsPerStrip);
  }
}

void MadeTiff::WriteTo(const std::string& path, const TiffLayout& layout) const {
  std::filesystem::remove(path);
  TIFF* const tiff = TIFFOpen(path.c_str(), layout.bigEndian ? "wb" : "wl");
  Require(tiff != nullptr);
  SetFields(tiff, layout);
  TIFFDeferStrileArrayWriting(tiff);
  Require(TIFFWriteCheck(tiff, layout.tiled, "test") == 1 && TIFFWriteDirectory(tiff) == 1 &&
          TIFFSetDirectory(tiff, 0) == 1 && TIFFForceStrileArrayWriting(tiff) == 1);
  const int32_t blockWidth = layout.tiled ? kTileWidth : width_;
  const int32_t blockHeight = layout.tiled ? kTileHeight : kRowsPerStrip;
  const int planes = layout.planes ? Samples() : 1;
  uint32_t number = 0;
  for (int plane = 0; plane < planes; ++plane) {
    for (int32_t top = 0; top < height_; top += blockHeight) {
      const int32_t rows = layout.tiled ? blockHeight : std::min(blockHeight, height_ - top);
      for (int32_t left = 0; left < width_; left += blockWidth) {
        std::vector<uint8_t> block = Block(left, top, blockWidth, rows, plane, Samples() / planes);
        const auto size = static_cast<tmsize_t>(block.size());
        Require((layout.tiled ? TIFFWriteEncodedTile(tiff, number, block.data(), size)
                              : TIFFWriteEncodedStrip(tiff, number, block.data(), size)) > 0);
        ++number;
      }
    }
  }
  TIFFClose(tiff);
}

Rgb MadeTiff::ColorAt(int32_t x, int32_t y, Rgb background) const {
  double levels[5] = {};  // 0 to 255
  for (int i = 0; i < Samples(); ++i)
    levels[i] = SampleAt(x, y, i) * 255.0 / ((1 << kind_.depth) - 1);
  double color[3];
  switch (kind_.photometric) {
    case PHOTOMETRIC_PALETTE:
      for (size_t i = 0; i < 3; ++i)
        color[i] = palette_[(i << kind_.depth) + static_cast<size_t>(SampleAt(x, y, 0))] / 257.0;
      break;
    case PHOTOMETRIC_RGB:
      std::copy_n(levels, 3, color);
      break;
    case PHOTOMETRIC_SEPARATED:
      for (int i = 0; i < 3; ++i)
        color[i] = std::max(255 - levels[i] - levels[3], 0.0);
      break;
    case PHOTOMETRIC_YCBCR: {
      const double cb = levels[1] - 128, cr = levels[2] - 128;
      color[0] = levels[0] + 1.402 * cr;
      color[1] = levels[0] - 0.344136 * cb - 0.714136 * cr;
      color[2] = levels[0] + 1.772 * cb;
      for (double& channel : color)
        channel = std::clamp(channel, 0.0, 255.0);
      break;
    }
    default:
      std::fill_n(color, 3,
                  kind_.photometric == PHOTOMETRIC_MINISWHITE ? 255 - levels[0] : levels[0]);
  }
  const double alpha = kind_.alpha ? levels[kind_.colors] / 255 : 1;
  const double share = kind_.alpha == EXTRASAMPLE_ASSOCALPHA ? 1 : alpha;
  const auto laid = [&](double over, int32_t under) {
    return static_cast<int32_t>(std::lround(over * share + under * (1 - alpha)));
  };
  return {laid(color[0], background.red), laid(color[1], background.green),
          laid(color[2], background.blue)};
}

int32_t MadeTiff::BitmapBits() const {
  if (Samples() > 1) return 24;
  return kind_.depth == 2 ? 4 : std::min(kind_.depth, 8);
}

}  // namespace vn::test
