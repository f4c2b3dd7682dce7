// vncore convert --into: many pictures, each as a run of its own makes it.
#include <gtest/gtest.h>

#include "tests/tool/command.h"

namespace vn::test {
namespace {

TEST_F(Command, ManyPicturesBecomeWhatSingleRunsMake) {
  std::string all;
  for (const char name : {'a', 'b', 'c', 'd', 'e'}) {
    Make(std::string(1, name) + ".png", 40 + name, 30, name % 2 ? 24 : 8);
    all += std::string(1, name) + ".png ";
  }
  ExpectRuns("convert " + all + "--into new/out --jobs 3 --format bmp --resample 50%");
  for (const std::string name : {"a", "b", "c", "d", "e"}) {
    ExpectRuns("convert " + name + ".png one.bmp --resample 50%");
    EXPECT_EQ(ReadFile(work_.File("new/out/" + name + ".bmp")), ReadFile(work_.File("one.bmp")));
  }

  WriteFile(work_.File("0.png"), "no picture");
  const Outcome stopped = Run("convert 0.png " + all + "--into some --jobs 1");
  EXPECT_EQ(stopped.status, 1);
  EXPECT_FALSE(std::filesystem::exists(work_.File("some/a.png")));
  const Outcome kept = Run("convert 0.png " + all + "--into some --jobs 2 --keep-going");
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(std::count(kept.error.begin(), kept.error.end(), '\n'), 2) << kept.error;
  EXPECT_NE(kept.error.find("vncore: 1 of 6 pictures failed\n"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(work_.File("some/e.png")));

  ExpectFails("convert a.png --into .");
  ExpectFails("convert a.png some/a.png --into new/out");
  ExpectFails("convert a.png out.png --jobs 2");
  ExpectFails("convert a.png");
}

}  // namespace
}  // namespace vn::test
