// The built tool as its user runs it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/tool/made_png.h"
#include "tests/tool/temporary_folder.h"
#include "tools/picture.h"

namespace vn::test {
namespace {

using Names = std::vector<std::string>;

// Runs the tool in a folder of its own; the system's temporary files go to another one.
class Command : public testing::Test {
 protected:
  struct Outcome {
    int status;
    std::string out, error;
  };

  // `arguments` as for the shell; `before` stands in front, as a shell prefix.
  Outcome Run(const std::string& arguments, const std::string& before = "") const {
    const std::string line = "cd '" + work_.Path() + "' && " + before + " TMPDIR='" +
                             temporary_.Path() + "' '" VNCORE_TOOL "' " + arguments + " >'" +
                             streams_.File("out") + "' 2>'" + streams_.File("error") +
                             "' </dev/null";
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(streams_.File("out")),
            ReadFile(streams_.File("error"))};
  }

  void ExpectRuns(const std::string& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << arguments << ": " << outcome.error;
    EXPECT_EQ(outcome.error, "") << "no bar where there is no terminal";
  }

  // One line that says what, status 1, and nothing left but `names`.
  void ExpectFails(const std::string& arguments, const Names& names,
                   const std::string& before = "") const {
    SCOPED_TRACE(arguments);
    const Outcome outcome = Run(arguments, before);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.error.rfind("vncore: ", 0), 0u) << outcome.error;
    EXPECT_EQ(outcome.error.find('\n'), outcome.error.size() - 1) << outcome.error;
    EXPECT_EQ(work_.Names(), names);
    EXPECT_EQ(temporary_.Names(), Names{});
  }

  void Make(const std::string& name, const PngKind& kind, int32_t width, int32_t height,
            uint64_t seed) const {
    Random random(seed);
    WriteFile(work_.File(name), MadePng(kind, width, height, random).Encode(false));
  }

  std::string Bytes(const std::string& name) const { return ReadFile(work_.File(name)); }

  // The picture's rows as they are.
  Names Rows(const std::string& name) const {
    const auto source = tool::OpenPicture(work_.File(name), {});
    const tool::PictureInfo& info = source->Info();
    const auto bits = static_cast<uint32_t>(info.width * info.bits);
    Names rows(static_cast<size_t>(info.height), std::string((bits + 7) / 8, '\0'));
    for (std::string& row : rows)
      source->ReadRow(reinterpret_cast<uint8_t*>(row.data()));
    return rows;
  }

  const TemporaryFolder work_, temporary_, streams_;
};

constexpr PngKind kColor{PNG_COLOR_TYPE_RGB, 8, false};

TEST_F(Command, A24BitDeviceShowsAPictureAsItIs) {
  Make("in.png", kColor, 61, 34, 4);
  ExpectRuns("paint in.png out.png --device-bits 24");
  EXPECT_EQ(Rows("out.png"), Rows("in.png"));
  ExpectRuns("paint in.png part.png --device-bits 24 --source 7,5,20,11");
  Names part = Rows("in.png");
  part = Names(part.begin() + 5, part.begin() + 16);
  for (std::string& row : part)
    row = row.substr(7 * 3, 20 * 3);
  EXPECT_EQ(Rows("part.png"), part);
  ExpectRuns("paint in.png in.png --device-bits 24");
  EXPECT_EQ(Rows("in.png"), Rows("out.png")) << "a picture painted over its own file";
  ExpectRuns("paint in.png wide.png --device-bits 24 --size 40000x2");
  EXPECT_EQ(Rows("wide.png")[1].size(), 120000u);
}

TEST_F(Command, AllStoragePaintsTheSame) {
  Make("in.png", kColor, 90, 70, 5);
  const std::string variants[] = {"--storage auto",
                                  "--storage disk",
                                  "--storage memory",
                                  "--low-memory",
                                  "--low-memory --storage disk",
                                  "--low-memory --storage memory"};
  for (const char* how :
       {"--device-bits 8 --diffusion --size 140x31", "--device-bits 4 --ordered",
        "--device-bits 1 --clustered", "--device-bits 16", "--device-bits 24 --size 33x200"}) {
    std::string first;
    for (const std::string& storage : variants) {
      ExpectRuns("paint in.png out.png " + std::string(how) + " " + storage);
      if (first.empty()) first = Bytes("out.png");
      EXPECT_EQ(Bytes("out.png"), first) << how << " " << storage;
    }
  }
  EXPECT_EQ(work_.Names(), (Names{"in.png", "out.png"}));
  EXPECT_EQ(temporary_.Names(), Names{});
}

TEST_F(Command, PalettedPicturesKeepTheirColorsOnDevicesOfMoreBits) {
  for (const int depth : {1, 4, 8}) {
    const PngKind kind{PNG_COLOR_TYPE_PALETTE, depth, false};
    Random random(6);
    const MadePng picture(kind, 40, 9, random);
    WriteFile(work_.File("in.png"), picture.Encode(false));
    ExpectRuns("paint in.png out.png --device-bits 24");
    const Names rows = Rows("out.png");
    for (int32_t y = 0; y < 9; ++y) {
      for (int32_t x = 0; x < 40; ++x) {
        const auto* row = reinterpret_cast<const uint8_t*>(rows[static_cast<size_t>(y)].data());
        const Rgb seen = PixelReader<24>{row, nullptr}(static_cast<size_t>(x));
        const Rgb wanted = picture.ColorAt(x, y, {});
        EXPECT_TRUE(seen.red == wanted.red && seen.green == wanted.green &&
                    seen.blue == wanted.blue)
            << depth << " bits at " << x << ", " << y;
      }
    }
  }
}

TEST_F(Command, InfoAndChartSayAndDrawWhatTheyPromise) {
  Make("gray.png", {PNG_COLOR_TYPE_GRAY, 4, false}, 13, 6, 7);
  const Outcome info = Run("info gray.png");
  EXPECT_EQ(info.status, 0);
  for (const char* line :
       {"13 x 6 pixels", "4 bits", "16\n", "1, a gray ramp", "8 bytes", "48 bytes"}) {
    EXPECT_NE(info.out.find(line), std::string::npos) << line << " in\n" << info.out;
  }
  ExpectRuns("chart chart.png --size 120x90");
  EXPECT_EQ(Rows("chart.png").size(), 90u);
  EXPECT_EQ(Run("--help").status, 0);
}

TEST_F(Command, EveryFailureIsOneLineAndLeavesNothing) {
  Make("in.png", kColor, 200, 150, 8);
  const std::string sound = Bytes("in.png");
  WriteFile(work_.File("cut.png"), sound.substr(0, sound.size() / 2));
  WriteFile(work_.File("empty.png"), "");
  WriteFile(work_.File("text.png"), "This is no picture at all.\n");
  std::string huge = sound;  // a header of 2^31 - 1 pixels each way: its checksum fails
  huge.replace(16, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF");
  WriteFile(work_.File("huge.png"), huge);
  const Names names = work_.Names();
  const std::string arguments[] = {"paint missing.png out.png",
                                   "paint cut.png out.png",
                                   "paint cut.png out.png --low-memory --storage disk",
                                   "paint empty.png out.png",
                                   "paint text.png out.png",
                                   "paint huge.png out.png",
                                   "paint . out.png",
                                   "info cut.png",
                                   "info missing.png",
                                   "paint in.png nowhere/out.png",
                                   "paint in.png .",
                                   "paint in.png out.gif",
                                   "paint in.png /dev/full",
                                   "paint in.png out.png --size 0x5",
                                   "paint in.png out.png --size 100000x100000 --device-bits 24",
                                   "paint in.png out.png --size 3000000x1",
                                   "paint in.png out.png --size 12",
                                   "convert in.png out.png --palette /dev/zero",
                                   "paint in.png out.png --source 0,0,201,150",
                                   "paint in.png out.png --source -1,0,5,5",
                                   "paint in.png out.png --device-bits 2",
                                   "paint in.png out.png --ordered --diffusion",
                                   "paint in.png out.png --storage tape",
                                   "paint in.png out.png --background nocolour",
                                   "chart out.png --size 70000x70000",
                                   "chart",
                                   "unknown",
                                   ""};
  for (const std::string& line : arguments)
    ExpectFails(line, names);
  for (const char* line : {"--help", "info in.png"}) {
    const std::string full = VNCORE_TOOL " " + std::string(line) + " >/dev/full 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(("cd '" + work_.Path() + "' && " + full).c_str())), 1)
        << line;
  }
  // Files of at most 8 blocks: first the output, then the temporary storage has no room.
  ExpectFails("chart out.png", names, "ulimit -f 8;");
  ExpectFails("paint in.png out.png --low-memory --storage disk", names, "ulimit -f 8;");
}

// A picture that stops half-way keeps the tool waiting, with both of its files open, when the
// signal comes.
TEST_F(Command, ASignalLeavesNothing) {
  Make("in.png", kColor, 400, 300, 9);
  const std::string half = Bytes("in.png").substr(0, 100000);
  ASSERT_EQ(mkfifo(work_.File("pipe.png").c_str(), 0600), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (chdir(work_.Path().c_str()) != 0) _exit(9);
    setenv("TMPDIR", temporary_.Path().c_str(), 1);
    std::freopen(streams_.File("error").c_str(), "w", stderr);
    execl(VNCORE_TOOL, VNCORE_TOOL, "paint", "pipe.png", "out.png", "--low-memory", "--storage",
          "disk", nullptr);
    _exit(9);
  }
  {
    std::ofstream pipe(work_.File("pipe.png"), std::ios::binary);
    pipe << half << std::flush;
    for (int i = 0; i < 2000 && (work_.Names().size() < 3 || temporary_.Names().empty()); ++i) {
      usleep(5000);
    }
    EXPECT_EQ(work_.Names().size(), 3u) << "in.png, pipe.png and the unfinished output";
    EXPECT_EQ(temporary_.Names().size(), 1u) << "the temporary storage";
    kill(child, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  }
  EXPECT_EQ(work_.Names(), (Names{"in.png", "pipe.png"}));
  EXPECT_EQ(temporary_.Names(), Names{});
}

}  // namespace
}  // namespace vn::test
