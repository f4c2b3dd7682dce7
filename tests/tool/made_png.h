// PNG files of every kind, made from samples, and what they must show, told by a slow model.
#ifndef VNCORE_TESTS_TOOL_MADE_PNG_H
#define VNCORE_TESTS_TOOL_MADE_PNG_H

#include <png.h>

#include <cstdint>
#include <string>
#include <vector>

#include "kernel/pixel_format.h"
#include "tests/support/random.h"

namespace vn::test {

struct PngKind {
  int colorType;
  int depth;
  bool transparent;  // with a tRNS chunk
};

inline constexpr PngKind kPngKinds[] = {
    {PNG_COLOR_TYPE_GRAY, 1, false},        {PNG_COLOR_TYPE_GRAY, 2, false},
    {PNG_COLOR_TYPE_GRAY, 4, false},        {PNG_COLOR_TYPE_GRAY, 8, false},
    {PNG_COLOR_TYPE_GRAY, 16, false},       {PNG_COLOR_TYPE_GRAY, 1, true},
    {PNG_COLOR_TYPE_GRAY, 2, true},         {PNG_COLOR_TYPE_GRAY, 8, true},
    {PNG_COLOR_TYPE_GRAY, 16, true},        {PNG_COLOR_TYPE_PALETTE, 1, false},
    {PNG_COLOR_TYPE_PALETTE, 2, true},      {PNG_COLOR_TYPE_PALETTE, 4, false},
    {PNG_COLOR_TYPE_PALETTE, 8, true},      {PNG_COLOR_TYPE_RGB, 8, false},
    {PNG_COLOR_TYPE_RGB, 8, true},          {PNG_COLOR_TYPE_RGB, 16, false},
    {PNG_COLOR_TYPE_RGB, 16, true},         {PNG_COLOR_TYPE_GRAY_ALPHA, 8, false},
    {PNG_COLOR_TYPE_GRAY_ALPHA, 16, false}, {PNG_COLOR_TYPE_RGB_ALPHA, 8, false},
    {PNG_COLOR_TYPE_RGB_ALPHA, 16, false}};

class MadePng {
 public:
  MadePng(const PngKind& kind, int32_t width, int32_t height, Random& random);

  // The file's bytes.
  std::string Encode(bool interlaced) const;
  // What pixel (x, y) shows over `background`.
  Rgb ColorAt(int32_t x, int32_t y, Rgb background) const;
  // The depth of the bitmap that it must become over a gray background.
  int32_t BitmapBits() const;

 private:
  int Channels() const;
  const uint16_t* SamplesAt(int32_t x, int32_t y) const;

  PngKind kind_;
  int32_t width_, height_;
  std::vector<uint16_t> samples_;
  std::vector<png_color> palette_;
  std::vector<png_byte> alphas_;  // of palette entries
  std::vector<uint16_t> key_;     // the transparent gray or colour
};

}  // namespace vn::test

#endif
