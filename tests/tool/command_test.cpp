// Painting, failures, signals, and files that are no plain ones.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/tool/command.h"

namespace vn::test {
namespace {

TEST_F(Command, A24BitDeviceShowsAPictureAsItIs) {
  Make("in.png", 61, 34);
  const Seen in = Look("in.png");
  for (const auto& [bits, lost] : {std::pair{16, 8}, {24, 0}}) {
    ExpectRuns("paint in.png out.png --device-bits " + std::to_string(bits));
    ExpectShows(
        Look("out.png"), [&](int32_t x, int32_t y) { return in.At(x, y); }, lost);
  }
  ExpectRuns("paint in.png part.png --device-bits 24 --source 7,5,20,11");
  const Seen part = Look("part.png");
  EXPECT_TRUE(part.width == 20 && part.height == 11);
  ExpectShows(part, [&](int32_t x, int32_t y) { return in.At(x + 7, y + 5); });
  ExpectRuns("paint in.png in.png --device-bits 24");
  ExpectShows(Look("in.png"), [&](int32_t x, int32_t y) { return in.At(x, y); });
  ExpectRuns("paint in.png wide.png --device-bits 24 --size 40000x2");
  EXPECT_EQ(Look("wide.png").width, 40000);
  for (const int32_t bits : {1, 4, 8}) {  // palettes keep their colours
    Make("low.png", 40, 9, bits);
    ExpectRuns("paint low.png out.png --device-bits 24");
    const Seen low = Look("low.png");
    ExpectShows(Look("out.png"), [&](int32_t x, int32_t y) { return low.At(x, y); });
  }
}

TEST_F(Command, InfoAndChartSayAndDrawWhatTheyPromise) {
  tool::PictureInfo info;
  info.width = 13;
  info.height = 6;
  info.bits = 4;
  info.colors = tool::GrayRamp(16);
  WritePicture(work_.File("gray.png"), info, [](int32_t x, int32_t) { return x % 16; });
  const Outcome said = Run("info gray.png");
  EXPECT_EQ(said.status, 0);
  for (const char* line :
       {"13 x 6 pixels", "4 bits", "16\n", "1, a gray ramp", "8 bytes", "48 bytes"}) {
    EXPECT_NE(said.out.find(line), std::string::npos) << line << " in\n" << said.out;
  }
  ExpectRuns("chart chart.png --size 120x90");
  EXPECT_EQ(Look("chart.png").height, 90);
  EXPECT_EQ(Run("--help").status, 0);
}

TEST_F(Command, EveryFailureIsOneLineAndLeavesNothing) {
  Make("in.png", 200, 150);
  const std::string sound = ReadFile(work_.File("in.png"));
  WriteFile(work_.File("cut.png"), sound.substr(0, sound.size() / 2));
  WriteFile(work_.File("empty.png"), "");
  WriteFile(work_.File("text.png"), "This is no picture at all.\n");
  std::string huge = sound;  // a header of 2^31 - 1 pixels each way: its checksum fails
  huge.replace(16, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF");
  WriteFile(work_.File("huge.png"), huge);
  const struct {
    std::string start;
    std::vector<std::string> rests;
  } lines[] = {
      {"paint ",
       {"missing.png out.png", "cut.png out.png", "cut.png out.png --low-memory --storage disk",
        "empty.png out.png", "text.png out.png", "huge.png out.png", ". out.png",
        "in.png nowhere/out.png", "in.png .", "in.png out.gif", "in.png /dev/full",
        "in.png /dev/full --format png"}},
      {"",
       {"info --check cut.png", "info in.png --page 2", "info missing.png",
        "chart out.png --size 70000x70000", "chart", "unknown", ""}},
      {"convert ",
       {"in.png out", "in.png -", "in.png out.png --format gif", "in.png out.png --dither stucki",
        "- out.png"}},
      {"paint in.png out.png ",
       {"--size 0x5", "--size 100000x100000 --device-bits 24", "--size 3000000x1", "--size 12",
        "--source 0,0,201,150", "--source -1,0,5,5", "--device-bits 2", "--ordered --diffusion",
        "--storage tape", "--background nocolour"}},
  };
  for (const auto& line : lines) {
    for (const std::string& rest : line.rests)
      ExpectFails(line.start + rest);
  }
  for (const char* line : {"--help", "info in.png"}) {
    const std::string full = VNCORE_TOOL " " + std::string(line) + " >/dev/full 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(("cd '" + work_.Path() + "' && " + full).c_str())), 1)
        << line;
  }
  // Files of at most 8 blocks: first the output, then the temporary storage has no room.
  ExpectFails("chart out.png", "ulimit -f 8;");
  ExpectFails("paint in.png out.png --low-memory --storage disk", "ulimit -f 8;");
}

// A picture that stops half-way keeps the tool waiting, with both of its files open, when the
// signal comes.
TEST_F(Command, ASignalLeavesNothing) {
  Make("in.png", 400, 300);
  const std::string half = ReadFile(work_.File("in.png")).substr(0, 100000);
  const std::string path = MakePipe();
  for (const int sent : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
    const pid_t child = fork();
    if (child == 0) {
      signal(sent, SIG_DFL);
      const rlimit noCore{};
      setrlimit(RLIMIT_CORE, &noCore);
      std::freopen(streams_.File("error").c_str(), "w", stderr);
      Become("paint", "pipe.png", "out.png", "--low-memory", "--storage", "disk");
    }
    std::ofstream pipe(path, std::ios::binary);
    pipe << half << std::flush;
    WaitForFiles(3, 1);  // in.png, pipe.png and the unfinished output; the temporary storage
    kill(child, sent);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == sent) << status;
    EXPECT_EQ(work_.Names(), (Names{"in.png", "pipe.png"}));
    EXPECT_EQ(temporary_.Names(), Names{});
  }
}

// Links are written through, be there a file behind them or not, and of an old file's mode only the
// permissions are kept.
TEST_F(Command, LinksStayAndNewFilesGetNoSpecialMode) {
  namespace fs = std::filesystem;
  fs::create_directory(work_.File("sub"));
  fs::create_symlink("second.png", work_.File("first.png"));
  fs::create_symlink("sub/real.png", work_.File("second.png"));
  for (const char* round : {"new", "old"}) {
    SCOPED_TRACE(round);
    ExpectRuns("chart first.png --size 20x10");
    EXPECT_TRUE(fs::is_symlink(work_.File("first.png")) &&
                fs::is_symlink(work_.File("second.png")));
    EXPECT_EQ(Look("sub/real.png").width, 20);
    struct stat state;
    ASSERT_EQ(stat(work_.File("sub/real.png").c_str(), &state), 0);
    EXPECT_TRUE(*round == 'n' || (state.st_mode & 07777) == 0751);
    ASSERT_EQ(chmod(work_.File("sub/real.png").c_str(), 06751), 0);
  }
  fs::create_symlink("circle.png", work_.File("circle.png"));
  ExpectFails("chart circle.png");
}

}  // namespace
}  // namespace vn::test
