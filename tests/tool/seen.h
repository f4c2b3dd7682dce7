// What a picture shows, pixel by pixel.
#ifndef VNCORE_TESTS_TOOL_SEEN_H
#define VNCORE_TESTS_TOOL_SEEN_H

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tools/operations/load_bitmap.h"

namespace vn {

inline bool operator==(const Rgb& a, const Rgb& b) {
  return a.red == b.red && a.green == b.green && a.blue == b.blue;
}
inline std::ostream& operator<<(std::ostream& to, const Rgb& color) {
  return to << color.red << ',' << color.green << ',' << color.blue;
}

}  // namespace vn

namespace vn::test {

constexpr Rgb kWhite{255, 255, 255};

struct Seen {
  int32_t width, height, bits, xDotsPerInch, yDotsPerInch;
  std::vector<RGBQUAD> palette;
  std::vector<Rgb> pixels;  // top line first
  Rgb At(int32_t x, int32_t y) const { return pixels.at(y * width + x); }
};

// Reads a picture to its end through a bitmap, or throws Failure.
Seen Look(const std::string& path, Rgb background = kWhite);

using ColorModel = std::function<Rgb(int32_t x, int32_t y)>;
// No channel of any pixel is further than `tolerance` from the model, `y` being 0 at the top.
void ExpectShows(const Seen& seen, const ColorModel& model, int32_t tolerance = 0);

// Writes a picture through the tool. A pixel is an entry of its palette, or 0xRRGGBB at 24 bits.
void WritePicture(const std::string& path, const tool::PictureInfo& info,
                  const std::function<uint32_t(int32_t x, int32_t y)>& pixelAt);

}  // namespace vn::test

#endif
