// Formats that libvips reads for the tool.
#include <gtest/gtest.h>

#include "tests/tool/command.h"

namespace vn::test {
namespace {

// Frames of an animation, which the tool writes both as pages of a GIF file and as pictures.
TEST_F(Command, OtherFormatsAreReadThroughLibvips) {
  Make("in.png", 50, 40);
  ExpectRuns("effect in.png frames.gif --frames 3 --effect rows-down");
  ExpectRuns("effect in.png frames --frames 3 --effect rows-down");
  EXPECT_NE(Run("info frames.gif").out.find("format      GIF"), std::string::npos);
  ExpectRuns("convert frames.gif out.png --all-pages");
  for (const std::string page : {"1", "2", "3"}) {
    const Seen out = Look("out-" + page + ".png");
    const Seen frame = Look("frames/frame-00" + page + ".png");
    ASSERT_TRUE(out.width == 50 && out.height == 40);
    ExpectShows(out, [&](int32_t x, int32_t y) { return frame.At(x, y); });
  }
  const std::string sound = ReadFile(work_.File("frames.gif"));
  WriteFile(work_.File("cut.gif"), sound.substr(0, sound.size() / 2));
  ExpectFails("convert cut.gif out.png --page 3");
  ExpectRuns("convert - out.png --page 2 <frames.gif");
}

}  // namespace
}  // namespace vn::test
