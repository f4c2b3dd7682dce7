// Palettes by name, and those of libimagequant.
#include <gtest/gtest.h>

#include "tests/tool/command.h"
#include "tools/operations/named_palettes.h"

namespace vn::test {
namespace {

TEST_F(Command, NamedPalettesGiveTheirColoursInTheirOrder) {
  ExpectRuns("chart in.png --size 120x90");
  const std::string listed = Run("palettes").out;
  EXPECT_EQ(listed.find('\x1b'), listed.npos) << "no swatches where there is no terminal";
  for (const tool::NamedPalette& palette : tool::NamedPalettes()) {
    const std::string name = palette.name;
    SCOPED_TRACE(name);
    EXPECT_NE(listed.find(name + " "), listed.npos);
    const auto colors = *tool::FindNamedPalette(name);
    ExpectRuns("convert in.png out.png --palette " + name);
    const Seen out = Look("out.png");
    ASSERT_GE(out.palette.size(), colors.size());
    for (size_t i = 0; i < colors.size(); ++i)
      EXPECT_EQ(ColorOf(out.palette[i]), ColorOf(colors[i])) << i;
  }
  ExpectRuns("convert in.png looks.png --palette epaper-7-measured");
  ExpectRuns("convert in.png names.png --palette epaper-7-measured --recolor epaper-7");
  const Seen looks = Look("looks.png"), names = Look("names.png");
  const auto from = *tool::FindNamedPalette("epaper-7-measured"),
             to = *tool::FindNamedPalette("epaper-7");
  ExpectShows(names, [&](int32_t x, int32_t y) {
    for (size_t i = 0; i < from.size(); ++i) {
      if (ColorOf(from[i]) == looks.At(x, y)) return ColorOf(to[i]);
    }
    return Rgb{-1, -1, -1};
  });
  ExpectFails("convert in.png out2.png --recolor ega");
  ExpectFails("convert in.png out2.png --palette nosuch");
}

#ifdef VNCORE_TOOL_IMAGEQUANT
TEST_F(Command, TheBestPaletteIsCloserThanOurs) {
  ExpectRuns("chart in.png --size 240x180");
  const Seen in = Look("in.png");
  const auto error = [&](const std::string& palette) {
    ExpectRuns("convert in.png out.png --colors 256 --dither none --palette " + palette);
    const Seen out = Look("out.png");
    int64_t sum = 0;
    for (size_t i = 0; i < in.pixels.size(); ++i) {
      const Rgb a = in.pixels[i], b = out.pixels[i];
      const int64_t red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
      sum += red * red + green * green + blue * blue;
    }
    return sum;
  };
  EXPECT_LT(error("best"), error("optimized"));
  ExpectRuns("convert in.png out.png --fill red --palette best");  // one colour
  ExpectShows(Look("out.png"), [](int32_t, int32_t) { return Rgb{255, 0, 0}; });
}
#endif

}  // namespace
}  // namespace vn::test
