// What the cases draw on, and the DIBs that they draw: written for the platform alone.
#ifndef VNCORE_TESTS_CASES_SURFACES_H
#define VNCORE_TESTS_CASES_SURFACES_H

#include <vector>

#include "tests/cases/case.h"
#include "tests/support/dib_info.h"

namespace vn::cases {

using test::DibInfo;
using test::DibOf;

// Bytes from row to row of a DIB.
inline uint32_t DibStride(int32_t width, int32_t bits) {
  return static_cast<uint32_t>((width * bits + 31) / 32 * 4);
}

// A DIB with random pixels, its rows bottom line first or top line first.
class Dib {
 public:
  // With `indexes` the table of depths up to 8 holds random indexes below 256.
  Dib(Case& test, int32_t width, int32_t height, int32_t bits, bool topFirst, bool indexes);

  BITMAPINFO* info() { return info_.get(); }
  DibInfo& all() { return info_; }
  const void* bits() const { return pixels_.data(); }
  UINT usage() const { return indexes_ ? DIB_PAL_COLORS : DIB_RGB_COLORS; }
  int32_t width() const { return info_.header.biWidth; }
  int32_t height() const { return height_; }

 private:
  DibInfo info_{};
  int32_t height_;
  bool indexes_;
  std::vector<uint8_t> pixels_;
};

// A DIB section of random pixels and colours, selected in a memory context.
class Section {
 public:
  Section(Case& test, int32_t width, int32_t height, int32_t bits);
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  ~Section();

  HDC context() const { return context_; }
  HBITMAP bitmap() const { return bitmap_; }
  int32_t width() const { return width_; }
  int32_t height() const { return height_; }
  int32_t bits() const { return bits_; }
  // The pixels that it holds, without the fill at a row's end.
  void Fold(Case& test) const;

 private:
  HDC context_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  uint8_t* pixels_ = nullptr;
  int32_t width_, height_, bits_;
};

// Selects a clip of some rectangles, or leaves the one that is there.
void RandomClip(Case& test, const Section& target);

// Selects a palette of random colours into a context for the length of a scope.
class RandomPaletteScope {
 public:
  RandomPaletteScope(Case& test, HDC context, int32_t count);
  RandomPaletteScope(const RandomPaletteScope&) = delete;
  RandomPaletteScope& operator=(const RandomPaletteScope&) = delete;
  ~RandomPaletteScope();

 private:
  HDC context_;
  HPALETTE palette_, before_;
};

}  // namespace vn::cases

#endif
