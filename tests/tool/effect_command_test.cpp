// vncore effect: states of the screen as files.
#include <gtest/gtest.h>

#include <algorithm>

#include <vncore/vn_effect.h>
#include "tests/tool/command.h"

namespace vn::test {
namespace {

using Effect = Command;

TEST_F(Effect, StatesGoFromThePictureBeforeToTheWholeOne) {
  Make("in.png", 61, 34);
  Make("before.png", 61, 34, 8);
  const Seen in = Look("in.png"), before = Look("before.png");
  ExpectRuns("effect in.png states --effect rows-down --frames 3 --device-bits 24");
  ExpectShows(Look("states/frame-002.png"), [&](int32_t x, int32_t y) {
    return y < 17 ? in.At(x, y) : Rgb{0, 0, 0};
  });
  ExpectRuns(
      "effect in.png states --effect columns-left --frames 5 --device-bits 24 --from before.png");
  const int32_t borders[] = {61, 45, 30, 15, 0};
  for (int i = 0; i < 5; ++i) {
    ExpectShows(
        Look("states/frame-00" + std::to_string(i + 1) + ".png"),
        [&](int32_t x, int32_t y) { return x < borders[i] ? before.At(x, y) : in.At(x, y); });
  }
}

TEST_F(Effect, EveryEffectEndsWithThePaint) {
  Make("in.png", 61, 34);
  ExpectRuns("paint in.png whole.png --ordered --size 90x70");
  const std::string whole = ReadFile(work_.File("whole.png"));
  for (int effect = 0; effect < EFFECT_COUNT; ++effect) {
    ExpectRuns("effect in.png states --frames 2 --ordered --size 90x70 --effect " +
               std::to_string(effect));
    EXPECT_TRUE(ReadFile(work_.File("states/frame-002.png")) == whole) << effect;
  }
  const std::string names = Run("effect --list").out;
  EXPECT_EQ(std::count(names.begin(), names.end(), '\n'), EFFECT_COUNT);
}

TEST_F(Effect, FailuresLeaveNothing) {
  Make("in.png", 61, 34);
  for (const std::string options : {"--effect 29", "--effect wipe", "--frames 1", "--seconds 601",
                                    "--from missing.png", "--device-bits 2", "--source 60,0,5,5"})
    ExpectFails("effect in.png states.gif " + options);
  // Nor do they touch the states of an earlier run.
  std::filesystem::create_directories(work_.File("states/frame-002.png"));
  WriteFile(work_.File("states/frame-001.png"), "earlier");
  ExpectFails("effect in.png states --frames 2");
  EXPECT_EQ(ReadFile(work_.File("states/frame-001.png")), "earlier");
#ifdef VNCORE_TOOL_GIF
  ExpectFails("effect in.png states.gif --device-bits 24");
  ExpectRuns("effect in.png states.gif --effect spiral-in --frames 7");
  const std::string file = ReadFile(work_.File("states.gif"));
  int frames = 0;
  for (size_t at = 0; (at = file.find("\x21\xF9\x04", at)) != file.npos; ++at)
    ++frames;
  EXPECT_EQ(frames, 7);
#endif
}

}  // namespace
}  // namespace vn::test
