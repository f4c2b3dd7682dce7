#include <tiffio.h>

#include <filesystem>
#include <stdexcept>

#include "tests/support/temporary_folder.h"
#include "tests/tool/sampled.h"

namespace vn::test {
namespace {

struct TiffKind {
  Meaning meaning;
  int depth;
  Alpha alpha;
  int compression;
  bool Jpeg() const { return compression == COMPRESSION_JPEG; }
};

constexpr TiffKind kTiffKinds[] = {
    {Meaning::kGray, 1, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kWhiteIsZero, 1, Alpha::kNone, COMPRESSION_CCITTRLE},
    {Meaning::kWhiteIsZero, 1, Alpha::kNone, COMPRESSION_CCITTFAX3},
    {Meaning::kWhiteIsZero, 1, Alpha::kNone, COMPRESSION_CCITTFAX4},
    {Meaning::kGray, 1, Alpha::kNone, COMPRESSION_CCITTFAX4},
    {Meaning::kWhiteIsZero, 2, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kGray, 4, Alpha::kNone, COMPRESSION_PACKBITS},
    {Meaning::kWhiteIsZero, 8, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kGray, 16, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kPalette, 1, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kPalette, 2, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kPalette, 4, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kPalette, 8, Alpha::kNone, COMPRESSION_ADOBE_DEFLATE},
    {Meaning::kRgb, 8, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kRgb, 8, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kRgb, 16, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kRgb, 8, Alpha::kPlain, COMPRESSION_NONE},
    {Meaning::kRgb, 8, Alpha::kMultiplied, COMPRESSION_LZW},
    {Meaning::kRgb, 16, Alpha::kPlain, COMPRESSION_ADOBE_DEFLATE},
    {Meaning::kGray, 8, Alpha::kPlain, COMPRESSION_NONE},
    {Meaning::kGray, 8, Alpha::kMultiplied, COMPRESSION_NONE},
    {Meaning::kInks, 8, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kInks, 16, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kLab, 8, Alpha::kNone, COMPRESSION_NONE},
    {Meaning::kLab, 16, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kIccLab, 8, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kYcc, 8, Alpha::kNone, COMPRESSION_LZW},
    {Meaning::kYcc, 8, Alpha::kNone, COMPRESSION_JPEG},  // as photographs are kept
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

constexpr int32_t kTileWidth = 32, kTileHeight = 16;

void Require(bool done) {
  if (!done) throw std::logic_error("libtiff cannot write the test's picture");
}

// Whether libtiff can write the kind so.
bool Can(const TiffKind& kind, const TiffLayout& layout) {
  return kind.Jpeg() ? !layout.tiled && !layout.planes
                     : !layout.planes || kind.meaning != Meaning::kYcc;
}

// 1 where samples are rounded before alpha is laid or inks are taken together, by libtiff, or in
// Lab.
int32_t ToleranceOf(const TiffKind& kind) {
  if (kind.Jpeg()) return 12;
  return kind.meaning >= Meaning::kYcc || kind.alpha == Alpha::kMultiplied ||
         (kind.depth == 16 && (kind.alpha != Alpha::kNone || kind.meaning == Meaning::kInks));
}

Sampled MakeSamples(const TiffKind& kind, int32_t width, int32_t height, Random& random) {
  Sampled made(kind.meaning, kind.depth, kind.alpha, width, height, random);
  if (kind.Jpeg()) made.meaning = Meaning::kRgb;                     // as libtiff takes it
  for (size_t i = 0; kind.Jpeg() && i < made.samples.size(); ++i) {  // so that little is lost
    const size_t x = i / 3 % static_cast<size_t>(width), y = i / 3 / static_cast<size_t>(width);
    made.samples[i] = static_cast<uint16_t>(i % 3 == 0 ? 3 * x : i % 3 == 1 ? 5 * y : 200 - x - y);
  }
  return made;
}

// Chroma is halved, and comes as RGB. The library forgets this with every directory.
void SetJpeg(TIFF* tiff) {
  TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 95);
  TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
}

void SetFields(TIFF* tiff, const Sampled& made, const TiffKind& kind, const TiffLayout& layout) {
  constexpr int kPhotometric[] = {
      PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_PALETTE, PHOTOMETRIC_RGB,
      PHOTOMETRIC_SEPARATED,  PHOTOMETRIC_YCBCR,      PHOTOMETRIC_CIELAB,  PHOTOMETRIC_ICCLAB};
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, made.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, made.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, made.depth);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, made.Count());
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kPhotometric[static_cast<int>(kind.meaning)]);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind.compression);
  if (kind.compression == COMPRESSION_CCITTFAX3) {
    TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, GROUP3OPT_2DENCODING | GROUP3OPT_FILLBITS);
  }
  if (kind.Jpeg()) {
    SetJpeg(tiff);
  } else if (kind.meaning == Meaning::kYcc) {
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
  if (kind.alpha != Alpha::kNone) {
    const uint16_t alpha =
        kind.alpha == Alpha::kPlain ? EXTRASAMPLE_UNASSALPHA : EXTRASAMPLE_ASSOCALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  }
  if (kind.meaning == Meaning::kPalette) {
    std::vector<uint16_t> map[3];
    for (size_t i = 0; i < size_t{1} << made.depth; ++i) {
      const Rgb color = i < made.palette.size() ? made.palette[i] : Rgb{};
      map[0].push_back(color.red * 257);
      map[1].push_back(color.green * 257);
      map[2].push_back(color.blue * 257);
    }
    TIFFSetField(tiff, TIFFTAG_COLORMAP, map[0].data(), map[1].data(), map[2].data());
  }
  if (layout.tiled) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTileWidth);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTileHeight);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kind.Jpeg() ? 16 : 4);
  }
}

// Makes the file, its directory before the pixels, so that it can be cut within them.
void Write(const std::string& path, const Sampled& made, const TiffKind& kind,
           const TiffLayout& layout) {
  std::filesystem::remove(path);
  TIFF* const tiff = TIFFOpen(path.c_str(), layout.bigEndian ? "wb" : "wl");
  Require(tiff != nullptr);
  SetFields(tiff, made, kind, layout);
  TIFFDeferStrileArrayWriting(tiff);
  Require(TIFFWriteCheck(tiff, layout.tiled, "test") == 1 && TIFFWriteDirectory(tiff) == 1 &&
          TIFFSetDirectory(tiff, 0) == 1 && TIFFForceStrileArrayWriting(tiff) == 1);
  if (kind.Jpeg()) SetJpeg(tiff);
  const int32_t blockWidth = layout.tiled ? kTileWidth : made.width;
  const int32_t blockHeight = layout.tiled ? kTileHeight : kind.Jpeg() ? 16 : 4;
  const int planes = layout.planes ? made.Count() : 1;
  uint32_t number = 0;
  for (int plane = 0; plane < planes; ++plane) {
    for (int32_t top = 0; top < made.height; top += blockHeight) {
      const int32_t rows = layout.tiled ? blockHeight : std::min(blockHeight, made.height - top);
      for (int32_t left = 0; left < made.width; left += blockWidth) {
        std::vector<uint8_t> block =
            made.Rows(left, top, blockWidth, rows, plane, made.Count() / planes);
        for (size_t i = 0; made.depth == 16 && i < block.size(); i += 2)
          StoreWord(&block[i], static_cast<uint32_t>(block[i] << 8 | block[i + 1]));
        const auto size = static_cast<tmsize_t>(block.size());
        Require((layout.tiled ? TIFFWriteEncodedTile(tiff, number, block.data(), size)
                              : TIFFWriteEncodedStrip(tiff, number, block.data(), size)) > 0);
        ++number;
      }
    }
  }
  TIFFClose(tiff);
}

}  // namespace

void ForTiffSamples(bool each, const UseSample& use) {
  const TemporaryFolder folder;
  const std::string path = folder.File("made.tif");
  Random random(1);
  for (const TiffKind& kind : kTiffKinds) {
    for (const auto& [width, height] : {std::pair{37, 11}, {1, 1}, {3, 6}, {71, 37}}) {
      const Sampled made = MakeSamples(kind, width, height, random);
      const int32_t last = height - 1;
      const auto which = static_cast<size_t>(random.Between(0, std::size(kLayouts) - 1));
      for (size_t i = each ? which : 0; i < std::size(kLayouts); ++i) {
        const TiffLayout& layout = kLayouts[i];
        if (!Can(kind, layout)) continue;
        Write(path, made, kind, layout);
        use({Told("meaning", static_cast<int>(kind.meaning), "depth", kind.depth, "alpha",
                  static_cast<int>(kind.alpha), "compression", kind.compression, "layout", i,
                  width),
             // The last bytes may be padding of a tile or a strip.
             ReadFile(path), width, height, made.BitmapBits(), ToleranceOf(kind), true, 200,
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
