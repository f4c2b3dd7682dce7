// vncore convert --draw: what it leaves alone, and what it refuses.
#include "tests/tool/command.h"

namespace vn::test {
namespace {

class Draw : public Command {};

// Lines, figures and letters on pictures of random pixels and colours: nothing outside of the region
// changes, nor does the table, and a figure has the one colour of it that is nearest.
TEST_F(Draw, StaysInTheRegionAndInTheTable) {
  constexpr Rgb kBrush{32, 160, 240};
  const std::string region = "--region ellipse:10,3,60,30 ";
  const bool writes = Run("convert in.png text.png --draw text:0,0,9,a").status == 0;
  for (const int32_t bits : {1, 4, 8, 24}) {
    SCOPED_TRACE(bits);
    Make("in.png", 90, 40, bits);
    ExpectRuns("convert in.png mask.png --depth 24 --fill white " + region + "--fill black");
    ExpectRuns("convert in.png flat.png " + region +
               "--pen none --brush 32,160,240 --draw rect:0,0,90,40");
    ExpectRuns("convert in.png out.png " + region +
               "--pen white,3 --draw line:0,0,89,39 --draw ellipse:-5,5,80,20 --pen black" +
               (writes ? " --draw text:12,6,24,Text" : ""));
    const Seen in = Look("in.png"), mask = Look("mask.png");
    const Seen flat = Look("flat.png"), out = Look("out.png");
    EXPECT_EQ(in.bits, out.bits);
    EXPECT_EQ(in.palette.size(), out.palette.size());
    const auto distance = [&](Rgb c) {
      const int32_t r = c.red - kBrush.red, g = c.green - kBrush.green, b = c.blue - kBrush.blue;
      return r * r + g * g + b * b;
    };
    int32_t nearest = bits == 24 ? 0 : INT32_MAX, changed = 0;
    for (const RGBQUAD& c : in.palette)
      nearest = std::min(nearest, distance({c.rgbRed, c.rgbGreen, c.rgbBlue}));
    for (size_t i = 0; i < in.pixels.size(); ++i) {
      const bool inside = mask.pixels[i] == Rgb{0, 0, 0};
      ASSERT_TRUE(inside || (out.pixels[i] == in.pixels[i] && flat.pixels[i] == in.pixels[i])) << i;
      // With two colours it is the one that contrasts with the background.
      ASSERT_TRUE(!inside || bits == 1 || distance(flat.pixels[i]) == nearest) << i;
      changed += !(out.pixels[i] == flat.pixels[i] || out.pixels[i] == in.pixels[i]);
    }
    EXPECT_TRUE(bits == 1 || changed > 200) << changed;
  }
}

TEST_F(Draw, MovesLettersWhole) {
  Make("in.png", 90, 40);
  const std::string black = "convert in.png out.png --fill black --pen white --draw ";
  if (Run(black + "text:0,0,9,a").status) GTEST_SKIP() << "no fonts";
  constexpr int32_t kRight = 17, kDown = 5;
  ExpectRuns(black + "text:2,4,24,Tj");
  const Seen first = Look("out.png");
  EXPECT_GT(std::count(first.pixels.begin(), first.pixels.end(), kWhite), 10);
  ExpectRuns(black + "text:19,9,24,Tj");
  const Seen moved = Look("out.png");
  for (int32_t y = 0; y < 40 - kDown; ++y) {
    for (int32_t x = 0; x < 90 - kRight; ++x)
      ASSERT_EQ(first.pixels[y * 90 + x], moved.pixels[(y + kDown) * 90 + x + kRight])
          << x << ", " << y;
  }
}

TEST_F(Draw, SaysWhatItCannotDraw) {
  Make("in.png", 20, 10);
  for (const char* options :
       {"--draw line:1,2,3", "--draw circle:1,2,3,4", "--draw rect:1,1,0,5",
        "--draw polygon:1,2,3,4", "--draw text:1,2,0,a", "--draw line:0,0,99999999,1",
        "--draw text:1,99999999,9,a", "--pen 1,2 --draw line:1,2,3,4", "--pen red,0",
        "--brush blur", "--low-memory --draw line:0,0,9,9",
        "--font 'No such face' --draw text:0,0,9,a"}) {
    ExpectFails(std::string("convert in.png out.png ") + options);
  }
  // A machine without fonts.
  WriteFile(work_.File("fonts.conf"), "<fontconfig/>");
  ExpectFails("convert in.png out.png --draw text:0,0,9,a",
              "FONTCONFIG_FILE='" + work_.File("fonts.conf") + "'");
}

}  // namespace
}  // namespace vn::test
