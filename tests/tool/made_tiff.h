// TIFF files of many kinds, made from samples, and what they must show, told by a slow model.
#ifndef VNCORE_TESTS_TOOL_MADE_TIFF_H
#define VNCORE_TESTS_TOOL_MADE_TIFF_H

#include <tiffio.h>

#include <cstdint>
#include <string>
#include <vector>

#include "kernel/pixel_format.h"
#include "tests/support/random.h"

namespace vn::test {

struct TiffKind {
  int photometric;
  int depth;
  int colors;  // samples of a pixel but for alpha
  int alpha;   // an EXTRASAMPLE_ value; 0: none
  int compression;
};

inline constexpr TiffKind kTiffKinds[] = {
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
};

struct TiffLayout {
  bool tiled = false, planes = false, bottomUp = false, bigEndian = false, lowBitFirst = false;
};

class MadeTiff {
 public:
  MadeTiff(const TiffKind& kind, int32_t width, int32_t height, Random& random);

  // Makes the file, its directory before the pixels, so that it can be cut within them.
  void WriteTo(const std::string& path, const TiffLayout& layout) const;
  // What pixel (x, y) shows over `background`.
  Rgb ColorAt(int32_t x, int32_t y, Rgb background) const;
  // The depth of the bitmap that it must become.
  int32_t BitmapBits() const;

 private:
  int Samples() const { return kind_.colors + (kind_.alpha ? 1 : 0); }
  int32_t SampleAt(int32_t x, int32_t y, int sample) const;
  void SetFields(TIFF* tiff, const TiffLayout& layout) const;
  std::vector<uint8_t> Block(int32_t left, int32_t top, int32_t width, int32_t height,
                             int firstSample, int samples) const;

  TiffKind kind_;
  int32_t width_, height_;
  std::vector<uint16_t> samples_;
  std::vector<uint16_t> palette_;  // all red, all green, all blue
};

}  // namespace vn::test

#endif
