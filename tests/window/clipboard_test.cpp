// vncore copy and paste between this tool and other programs, on both kinds of desktop.
#include "tests/tool/command.h"
#include "tests/window/desktop.h"

namespace vn::test {
namespace {

class Clipboard : public Command {
 protected:
  void SetUp() override {
    if (!desktop_.works()) GTEST_SKIP() << "Xvfb is missing or does not start";
    setenv("DISPLAY", desktop_.name().c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
    Make("in.png", 320, 240);
    Make("bits.png", 33, 20, 1);
  }

  bool Shell(const std::string& line) const {
    return std::system(("cd '" + work_.Path() + "' && " + line).c_str()) == 0;
  }

  // `give` and `take` are the other program's words; a type follows.
  void ExpectExchange(const std::string& give, const std::string& take) const {
    for (const std::string type : {"png", "bmp"}) {
      ExpectRuns("copy in.png --type " + type);
      EXPECT_TRUE(Shell(take + "image/" + type + " >taken." + type));
      EXPECT_EQ(Look("taken." + type).pixels, Look("in.png").pixels) << type;

      ExpectRuns("convert bits.png given." + type);
      EXPECT_TRUE(Shell(give + "image/" + type + " <given." + type));
      ExpectRuns("paste pasted.png");
      EXPECT_EQ(Look("pasted.png").bits, 1);
      EXPECT_EQ(Look("pasted.png").pixels, Look("bits.png").pixels) << type;
    }
    EXPECT_TRUE(Shell(give + "text/plain <in.png"));
    ExpectFails("paste out.png");
    EXPECT_TRUE(Shell("head -c 9000 in.png | " + give + "image/png"));
    ExpectFails("paste out.png");
  }

  Desktop desktop_;
};

TEST_F(Clipboard, IsTheX11Desktops) {
  if (!Shell("command -v xclip >/dev/null")) GTEST_SKIP() << "NO xclip";
  ExpectFails("paste out.png");
  ExpectExchange("xclip -selection clipboard -i -t ", "xclip -selection clipboard -o -t ");
  ExpectFails("copy in.png", "DISPLAY=:9999");
  ExpectFails("copy in.png", "DISPLAY=");
}

// The compositor, with a seat, is a window of the X server.
TEST_F(Clipboard, IsTheWaylandDesktops) {
  if (!Shell("command -v weston wl-copy >/dev/null")) GTEST_SKIP() << "NO weston OR NO wl-copy";
  const TemporaryFolder run;
  setenv("XDG_RUNTIME_DIR", run.Path().c_str(), 1);
  const pid_t compositor = fork();
  if (compositor == 0) {
    const std::string log = "--log=" + run.File("log");
    execlp("weston", "weston", "--backend=x11-backend.so", "--use-pixman", "--no-config",
           "--idle-time=0", "--socket=wayland", log.c_str(), nullptr);
    _exit(9);
  }
  if (desktop_.FindWindow()) {
    setenv("WAYLAND_DISPLAY", "wayland", 1);
    desktop_.MoveMouse(200, 200);
    ExpectExchange("wl-copy -t ", "wl-paste -n -t ");
  }
  kill(compositor, SIGTERM);
  waitpid(compositor, nullptr, 0);
  if (!getenv("WAYLAND_DISPLAY")) GTEST_SKIP() << "weston DOES NOT START";
}

}  // namespace
}  // namespace vn::test
