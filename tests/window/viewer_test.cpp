// vnview on a desktop of its own: what its window shows, and what keys and mouse make of that.
#include <gtest/gtest.h>

#include "tests/support/print_server.h"
#include "tests/tool/command.h"
#include "tests/window/desktop.h"

namespace vn::test {
namespace {

constexpr int kWidth = 320, kHeight = 240;
constexpr size_t kCount = size_t{kWidth} * kHeight;

using Image = std::vector<uint32_t>;

class Viewer : public Command {
 protected:
  void SetUp() override {
    if (!desktop_.works()) GTEST_SKIP() << "Xvfb is missing or does not start";
    // SDL leaves a few blocks of libraries that are unloaded by the time a leak is reported, so that
    // no suppression could name them.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 0);
    unsetenv("WAYLAND_DISPLAY");
    Make("in.png", kWidth, kHeight);
  }
  void TearDown() override {
    if (child_ > 0) ADD_FAILURE() << "left running", kill(child_, SIGKILL), Status();
  }

  // A window of kWidth by kHeight over these pictures.
  template <class... Argument>
  void Open(const Argument&... arguments) {
    child_ = fork();
    if (child_ == 0) {
      setenv("DISPLAY", desktop_.name().c_str(), 1);
      setenv("SDL_VIDEODRIVER", "x11", 1);
      if (chdir(work_.Path().c_str()) != 0) _exit(9);
      execl(VNCORE_VIEWER, VNCORE_VIEWER, "--size", "320x240", arguments..., nullptr);
      _exit(9);
    }
    ASSERT_TRUE(desktop_.FindWindow());
  }
  int Status() {
    int status = -1;
    waitpid(child_, &status, 0);
    child_ = 0;
    return status;
  }

  template <class Fits>
  bool WaitFor(Fits fits) const {
    for (int tries = 0; tries < 1000; ++tries, usleep(20000)) {
      const Image shown = desktop_.Pixels();
      if (shown.size() == kCount && fits(shown)) return true;
    }
    return false;
  }
  bool WaitFor(const Image& image) const {
    return WaitFor([&](const Image& shown) { return shown == image; });
  }

  static Image ImageOf(const std::function<Rgb(int x, int y)>& at) {
    Image image;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        const Rgb c = at(x, y);
        image.push_back(static_cast<uint32_t>(c.red << 16 | c.green << 8 | c.blue));
      }
    }
    return image;
  }
  // What vncore paint writes, from column and row `left`, `top` on.
  Image Painted(const std::string& options, int left = 0, int top = 0) const {
    ExpectRuns("paint " + options);
    const Seen seen = Look("out.png");
    return ImageOf([&](int x, int y) { return seen.At(x + left, y + top); });
  }

  Desktop desktop_;
  pid_t child_ = 0;
};

TEST_F(Viewer, ShowsWhatPaintWrites) {
  Open("in.png");
  EXPECT_TRUE(WaitFor(Painted("in.png out.png --device-bits 24")));
  const std::pair<const char*, const char*> steps[] = {
      {"8", "8"},           {"o", "8 --ordered"},   {"4", "4 --ordered"},
      {"1", "1 --ordered"}, {"c", "1 --clustered"}, {"d", "1 --diffusion"},
      {"2", "24"}};
  for (const auto& [key, options] : steps) {
    desktop_.Press(key);
    EXPECT_TRUE(WaitFor(Painted(std::string("in.png out.png --device-bits ") + options))) << key;
  }
  desktop_.Press("equal");
  EXPECT_TRUE(WaitFor(Painted("in.png out.png --device-bits 24 --size 480x360", 80, 60)));
  desktop_.Press("Left");
  EXPECT_TRUE(WaitFor(Painted("in.png out.png --device-bits 24 --size 480x360", 40, 60)));
  desktop_.Press("q");
  EXPECT_EQ(Status(), 0);
}

// The product of the picture's width and its width on the screen leaves 32 bits.
TEST_F(Viewer, ZoomsIntoPicturesOfAnyWidth) {
  Make("wide.png", 70000, kHeight, 1);
  Open("wide.png");
  const Seen wide = Look("wide.png");
  EXPECT_TRUE(WaitFor([](const Image& shown) { return shown != Image(kCount); }));
  desktop_.Press("0");
  EXPECT_TRUE(WaitFor(ImageOf([&](int x, int y) { return wide.At(x + 34840, y); })));
  desktop_.Press("equal");
  desktop_.Press("equal");
  EXPECT_TRUE(
      WaitFor(ImageOf([&](int x, int y) { return wide.At((x + 69840) / 2, (y + 120) / 2); })));
  desktop_.Press("q");
  EXPECT_EQ(Status(), 0);
}

TEST_F(Viewer, EffectsRunAreHeldAndEnd) {
  WriteFile(work_.File("broken.png"), "no picture");
  Make("next.png", kWidth, kHeight, 8);
  Open("in.png", "broken.png", "next.png", "--effect", "rows-down", "--seconds", "3");
  const Image in = Painted("in.png out.png --device-bits 24");
  const Image next = Painted("next.png out.png --device-bits 24");
  ASSERT_TRUE(WaitFor(in));
  const auto begun = [&](const Image& shown) { return shown.front() == next.front(); };
  desktop_.Press("n");
  ASSERT_TRUE(WaitFor(begun));
  desktop_.Press("space");
  Image held;
  EXPECT_TRUE(WaitFor([&](const Image& shown) {
    usleep(300000);
    held = desktop_.Pixels();
    return held == shown;
  }));
  const auto border = std::mismatch(held.begin(), held.end(), next.begin()).first - held.begin();
  EXPECT_TRUE(border > 0 && border < static_cast<ptrdiff_t>(kCount)) << border;
  EXPECT_TRUE(std::equal(held.begin() + border, held.end(), in.begin() + border));
  desktop_.Press("Escape");
  EXPECT_TRUE(WaitFor(next));
  desktop_.Press("Return");  // to its end, from black
  EXPECT_TRUE(WaitFor([&](const Image& shown) { return begun(shown) && shown.back() == 0; }));
  EXPECT_TRUE(WaitFor(next));
  desktop_.Press("p");
  ASSERT_TRUE(WaitFor([&](const Image& shown) { return shown.front() == in.front(); }));
  desktop_.AskToClose();
  EXPECT_EQ(Status(), 0);
}

TEST_F(Viewer, ARegionIsDraggedAndItsDashesMarch) {
  Open("in.png", "--screen", "8");
  const Image in = Painted("in.png out.png --device-bits 8");
  ASSERT_TRUE(WaitFor(in));
  desktop_.MoveMouse(200, 150);
  desktop_.HoldButton(1, true);
  for (const int x : {150, 100, 40})
    desktop_.MoveMouse(x, 50);
  desktop_.HoldButton(1, false);
  const auto framed = [&](const Image& shown) {
    size_t black = 0, white = 0;
    for (size_t i = 0; i < kCount; ++i) {
      const size_t x = i % kWidth, y = i / kWidth;
      const bool within = x >= 40 && x <= 200 && y >= 50 && y <= 150;
      if (within && (x == 40 || x == 200 || y == 50 || y == 150)) {
        black += shown[i] == 0;
        white += shown[i] == 0xFFFFFF;
      } else if (shown[i] != in[i]) {
        return false;
      }
    }
    return black > 200 && white > 200 && black + white == 2 * 161 + 2 * 99;
  };
  EXPECT_TRUE(WaitFor(framed));
  const Image first = desktop_.Pixels();
  EXPECT_TRUE(WaitFor([&](const Image& shown) { return shown != first && framed(shown); }));
  desktop_.Press("Escape");
  EXPECT_TRUE(WaitFor(in));
  desktop_.AskToClose();
  EXPECT_EQ(Status(), 0);
}

TEST_F(Viewer, TakesDroppedFilesCopiesAndPastes) {
  Make("next.png", kWidth, kHeight, 8);
  Make("third.png", kWidth, kHeight, 4);
  WriteFile(work_.File("broken.png"), "no picture");
  Open("in.png", "--effect", "plain", "--screen", "24");
  const Image in = Painted("in.png out.png --device-bits 24");
  const Image next = Painted("next.png out.png --device-bits 24");
  ASSERT_TRUE(WaitFor(in));
  EXPECT_TRUE(desktop_.Drop(work_.File("broken.png")));
  EXPECT_TRUE(desktop_.Drop(work_.File("next.png")));
  EXPECT_TRUE(WaitFor(next));

  if (std::system("command -v xclip >/dev/null") == 0) {
    setenv("DISPLAY", desktop_.name().c_str(), 1);
    const auto paste = [&](const std::vector<Rgb>& pixels) {
      for (int tries = 0; tries < 300; ++tries, usleep(100000)) {
        if (Run("paste pasted.png").status == 0 && Look("pasted.png").pixels == pixels) return true;
      }
      return false;
    };
    desktop_.PressWithControl("c");
    EXPECT_TRUE(paste(Look("next.png").pixels));
    desktop_.MoveMouse(40, 50);
    desktop_.HoldButton(1, true);
    desktop_.MoveMouse(199, 149);
    const auto dashed = [&](const Image& shown) {
      int dashes = 0;
      for (size_t y = 50; y < 150; ++y) {
        const uint32_t edge = shown[y * kWidth + 199];
        dashes += edge == 0 || edge == 0xFFFFFF;
      }
      return dashes == 100;
    };
    EXPECT_TRUE(WaitFor(dashed));
    desktop_.HoldButton(1, false);
    desktop_.PressWithControl("c");
    ExpectRuns("convert next.png part.png --crop 40,50,160,100");
    EXPECT_TRUE(paste(Look("part.png").pixels));
    ExpectRuns("copy third.png --type bmp");
    desktop_.PressWithControl("v");
    EXPECT_TRUE(WaitFor(Painted("third.png out.png --device-bits 24")));
    desktop_.Press("p");  // back to the file that showed
    EXPECT_TRUE(WaitFor(next));
  }
  desktop_.Press("p");
  EXPECT_TRUE(WaitFor(in));
  desktop_.Press("q");
  EXPECT_EQ(Status(), 0);
}

#ifdef VNCORE_TOOL_CUPS
TEST_F(Viewer, PrintsOnTheDefaultPrinter) {
  const PrintServer server;
  if (!server.works()) GTEST_SKIP() << "NO PRINT SCHEDULER: " << server.Log();
  Open("in.png");
  ASSERT_TRUE(WaitFor(Painted("in.png out.png --device-bits 24")));
  desktop_.PressWithControl("p");
  EXPECT_EQ(ReadFile(server.JobFile(1, ".told")).rfind("in.png\n1\n", 0), 0u);
  desktop_.Press("q");
  EXPECT_EQ(Status(), 0);
}
#endif

TEST_F(Viewer, FailuresAreOneLine) {
  const std::string none = "-u DISPLAY -u WAYLAND_DISPLAY -u SDL_VIDEODRIVER";
  for (const std::string& line : {none, none + " DISPLAY=:9999", "DISPLAY=" + desktop_.name()}) {
    const int status = std::system(("cd '" + work_.Path() + "' && env " + line +
                                    " '" VNCORE_VIEWER "' missing.png >out 2>error")
                                       .c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << status;
    const std::string error = ReadFile(work_.File("error"));
    EXPECT_EQ(error.rfind("vnview: ", 0), 0u) << error;
    EXPECT_EQ(error.find('\n'), error.size() - 1) << error;
  }
}

}  // namespace
}  // namespace vn::test
