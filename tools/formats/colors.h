// What readers make of colours that are not sRGB: inks, Lab, and colours of a profile.
#ifndef VNCORE_TOOLS_COLORS_H
#define VNCORE_TOOLS_COLORS_H

#include <memory>
#include <string>

#include "tools/formats/color_profile.h"
#include "tools/formats/picture.h"

namespace vn::tool {

// Cyan, magenta, yellow and black into 24-bit colours: through the picture's profile, else as light
// that passes a colour's ink and black, (255 - C)(255 - K) / 255.
class Inks {
 public:
  // The metadata lose their profile, which is used up. One that cannot be used is told as left.
  explicit Inks(Metadata& metadata);
  // `inks` holds four samples a pixel, 255 being most of an ink; `row` gets blue first.
  void Show(const uint8_t* inks, uint8_t* row, size_t pixels) const;

 private:
  std::unique_ptr<ToSrgb> profile_;
};

// CIE L*a*b* into 24-bit sRGB.
class Lab {
 public:
  // (x, y): the chromaticity of the white that it is relative to. D50 stands for what is impossible.
  Lab(double x, double y);
  // `lab` holds three samples a pixel of 16 bits: lightness, 0 to 65535 for 0 to 100; a* and b* in
  // 256ths, signed. `row` gets blue first.
  void Show(const uint16_t* lab, uint8_t* row, size_t pixels) const;

 private:
  double toLight_[3][3];  // red, green, blue, of X, Y, Z in parts of the white's own
};

// For ReadOptions::srgb: what turns rows of `samples` out of the metadata's profile, which they lose.
// Null without a profile. Throws Failure, in the name of the file, for one that cannot be used.
std::unique_ptr<ToSrgb> TakeToSrgb(const std::string& path, Metadata& metadata,
                                   ToSrgb::Samples samples);
// The same for a palette.
void PaletteToSrgb(const std::string& path, PictureInfo& info);

}  // namespace vn::tool

#endif
