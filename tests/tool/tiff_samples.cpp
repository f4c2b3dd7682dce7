#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "tests/support/temporary_folder.h"
#include "tests/tool/samples.h"

namespace vn::test {
namespace {

struct TiffKind {
  int photometric;
  int depth;
  int colors;  // samples of a pixel but for alpha
  int alpha;   // an EXTRASAMPLE_ value; 0: none
  int compression;
};

constexpr TiffKind kKinds[] = {
    {PHOTOMETRIC_MINISBLACK, 1, 1, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_MINISWHITE, 1, 1, 0, COMPRESSION_CCITTRLE},
    {PHOTOMETRIC_MINISWHITE, 1, 1, 0, COMPRESSION_CCITTFAX3},
    {PHOTOMETRIC_MINISWHITE, 1, 1, 0, COMPRESSION_CCITTFAX4},
    {PHOTOMETRIC_MINISBLACK, 1, 1, 0, COMPRESSION_CCITTFAX4},
    {PHOTOMETRIC_MINISWHITE, 2, 1, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_MINISBLACK, 4, 1, 0, COMPRESSION_PACKBITS},
    {PHOTOMETRIC_MINISWHITE, 8, 1, 0, COMPRESSION_LZW},
    {PHOTOMETRIC_MINISBLACK, 16, 1, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_PALETTE, 1, 1, 0, COMPRESSION_LZW},
    {PHOTOMETRIC_PALETTE, 2, 1, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_PALETTE, 4, 1, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_PALETTE, 8, 1, 0, COMPRESSION_ADOBE_DEFLATE},
    {PHOTOMETRIC_RGB, 8, 3, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_RGB, 8, 3, 0, COMPRESSION_LZW},
    {PHOTOMETRIC_RGB, 16, 3, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_RGB, 8, 3, EXTRASAMPLE_UNASSALPHA, COMPRESSION_NONE},
    {PHOTOMETRIC_RGB, 8, 3, EXTRASAMPLE_ASSOCALPHA, COMPRESSION_LZW},
    {PHOTOMETRIC_RGB, 16, 3, EXTRASAMPLE_UNASSALPHA, COMPRESSION_ADOBE_DEFLATE},
    {PHOTOMETRIC_MINISBLACK, 8, 1, EXTRASAMPLE_UNASSALPHA, COMPRESSION_NONE},
    {PHOTOMETRIC_MINISBLACK, 8, 1, EXTRASAMPLE_ASSOCALPHA, COMPRESSION_NONE},
    {PHOTOMETRIC_SEPARATED, 8, 4, 0, COMPRESSION_NONE},
    {PHOTOMETRIC_SEPARATED, 16, 4, 0, COMPRESSION_LZW},
    {PHOTOMETRIC_YCBCR, 8, 3, 0, COMPRESSION_LZW},
    {PHOTOMETRIC_YCBCR, 8, 3, 0, COMPRESSION_JPEG},  // as photographs are kept
};

struct TiffLayout {
  bool tiled = false, planes = false, bottomUp = false, bigEndian = false, lowBitFirst = false;
};

constexpr TiffLayout kLayouts[] = {
    {},
    {.bigEndian = true},
    {.bottomUp = true},
    {.tiled = true},
    {.planes = true},
    {.tiled = true, .planes = true, .bigEndian = true},
    {.tiled = true, .bottomUp = true},
    {.lowBitFirst = true},
    {.tiled = true, .lowBitFirst = true},
};

class MadeTiff {
 public:
  MadeTiff(const TiffKind& kind, int32_t width, int32_t height, Random& random);

  // Makes the file, its directory before the pixels, so that it can be cut within them.
  void WriteTo(const std::string& path, const TiffLayout& layout) const;
  // What pixel (x, y) shows over `background`.
  Rgb ColorAt(int32_t x, int32_t y, Rgb background) const;
  // The depth of the bitmap that it must become over white.
  int32_t BitmapBits() const;
  // Whether libtiff can write the kind so.
  bool Can(const TiffLayout& layout) const;
  int32_t Tolerance() const;

 private:
  int Samples() const { return kind_.colors + (kind_.alpha ? 1 : 0); }
  bool Jpeg() const { return kind_.compression == COMPRESSION_JPEG; }
  int32_t RowsPerStrip() const { return Jpeg() ? 16 : 4; }
  int32_t SampleAt(int32_t x, int32_t y, int sample) const;
  // Chroma is halved, and comes as RGB. The library forgets this with every directory.
  static void SetJpeg(TIFF* tiff) {
    TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 95);
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  }
  void SetFields(TIFF* tiff, const TiffLayout& layout) const;
  std::vector<uint8_t> Block(int32_t left, int32_t top, int32_t width, int32_t height,
                             int firstSample, int samples) const;

  TiffKind kind_;
  int32_t width_, height_;
  std::vector<uint16_t> samples_;
  std::vector<uint16_t> palette_;  // all red, all green, all blue
};

constexpr int32_t kTileWidth = 32, kTileHeight = 16;

void Require(bool done) {
  if (!done) throw std::logic_error("libtiff cannot write the test's picture");
}

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
  for (size_t i = 0; Jpeg() && i < samples_.size(); ++i) {  // smooth, so that little is lost
    const size_t x = i / 3 % static_cast<size_t>(width), y = i / 3 / static_cast<size_t>(width);
    samples_[i] = static_cast<uint16_t>(i % 3 == 0 ? 3 * x : i % 3 == 1 ? 5 * y : 200 - x - y);
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
  if (Jpeg()) {
    SetJpeg(tiff);
  } else if (kind_.photometric == PHOTOMETRIC_YCBCR) {
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
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, RowsPerStrip());
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
  if (Jpeg()) SetJpeg(tiff);
  const int32_t blockWidth = layout.tiled ? kTileWidth : width_;
  const int32_t blockHeight = layout.tiled ? kTileHeight : RowsPerStrip();
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
  switch (Jpeg() ? PHOTOMETRIC_RGB : kind_.photometric) {
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

bool MadeTiff::Can(const TiffLayout& layout) const {
  if (Jpeg()) return !layout.tiled && !layout.planes;
  return !layout.planes || kind_.photometric != PHOTOMETRIC_YCBCR;
}

// 1 where samples are rounded before alpha is laid or inks are taken together, or by libtiff.
int32_t MadeTiff::Tolerance() const {
  if (Jpeg()) return 12;
  return (kind_.alpha && (kind_.depth == 16 || kind_.alpha == EXTRASAMPLE_ASSOCALPHA)) ||
         (kind_.depth == 16 && kind_.colors == 4) || kind_.photometric == PHOTOMETRIC_YCBCR;
}

int32_t MadeTiff::BitmapBits() const {
  if (kind_.colors > 1) return 24;
  return kind_.depth == 2 ? 4 : std::min(kind_.depth, 8);
}

}  // namespace

void ForTiffSamples(bool each, const UseSample& use) {
  const TemporaryFolder folder;
  const std::string path = folder.File("made.tif");
  Random random(1);
  for (const TiffKind& kind : kKinds) {
    for (const auto& [width, height] : {std::pair{37, 11}, {1, 1}, {3, 6}, {71, 37}}) {
      const MadeTiff made(kind, width, height, random);
      const int32_t last = height - 1;
      const auto which = static_cast<size_t>(random.Between(0, std::size(kLayouts) - 1));
      for (size_t i = each ? which : 0; i < std::size(kLayouts); ++i) {
        const TiffLayout& layout = kLayouts[i];
        if (!made.Can(layout)) continue;
        made.WriteTo(path, layout);
        use({Told("photometric", kind.photometric, "depth", kind.depth, "alpha", kind.alpha,
                  "compression", kind.compression, "layout", i, width),
             // The last bytes may be padding of a tile or a strip.
             ReadFile(path), width, height, made.BitmapBits(), made.Tolerance(), true, 200,
             [&](int32_t x, int32_t y, Rgb under) {
               return made.ColorAt(x, layout.bottomUp ? last - y : y, under);
             }});
        if (each) break;
      }
      if (each) break;
    }
  }
}

}  // namespace vn::test
