// The built tool as its user runs it, in a folder of its own.
#ifndef VNCORE_TESTS_TOOL_COMMAND_H
#define VNCORE_TESTS_TOOL_COMMAND_H

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"
#include "tests/tool/seen.h"

namespace vn::test {

using Names = std::vector<std::string>;

class Command : public testing::Test {
 protected:
  struct Outcome {
    int status;
    std::string out, error;
  };

  // Runs the tool with `arguments` as for the shell, which may redirect its input; `before` stands in
  // front, as a shell prefix.
  // The system's temporary files go to a folder that must be empty in the end.
  Outcome Run(const std::string& arguments, const std::string& before = "") const {
    const std::string line = "cd '" + work_.Path() + "' && " + before + " TMPDIR='" +
                             temporary_.Path() + "' '" VNCORE_TOOL "' </dev/null " + arguments +
                             " >'" + streams_.File("out") + "' 2>'" + streams_.File("error") + "'";
    const int status = std::system(line.c_str());
    EXPECT_EQ(temporary_.Names(), Names{}) << arguments;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(streams_.File("out")),
            ReadFile(streams_.File("error"))};
  }

  void ExpectRuns(const std::string& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << arguments << ": " << outcome.error;
    EXPECT_EQ(outcome.error, "") << "no bar where there is no terminal";
  }

  // One line that says what, status 1, and nothing left but what was there.
  void ExpectFails(const std::string& arguments, const std::string& before = "") const {
    SCOPED_TRACE(arguments);
    const Names names = work_.Names();
    const Outcome outcome = Run(arguments, before);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.error.rfind("vncore: ", 0), 0u) << outcome.error;
    EXPECT_EQ(outcome.error.find('\n'), outcome.error.size() - 1) << outcome.error;
    EXPECT_EQ(work_.Names(), names);
  }

  // A PNG file of random pixels, with a random palette at up to 8 bits.
  void Make(const std::string& name, int32_t width, int32_t height, int32_t bits = 24) const {
    Random random(bits);
    tool::PictureInfo info;
    info.width = width;
    info.height = height;
    info.bits = bits;
    if (bits <= 8) info.colors.resize(size_t{1} << bits);
    for (RGBQUAD& color : info.colors)
      random.Fill(&color, 3);
    WritePicture(work_.File(name), info, [&](int32_t, int32_t) {
      return static_cast<uint32_t>(random.Next()) & ((1u << bits) - 1);
    });
  }

  Seen Look(const std::string& name) const { return test::Look(work_.File(name)); }

  // Turns a forked child into the tool, in its folder.
  template <class... Argument>
  [[noreturn]] void Become(const Argument&... arguments) const {
    if (chdir(work_.Path().c_str()) != 0) _exit(9);
    setenv("TMPDIR", temporary_.Path().c_str(), 1);
    execl(VNCORE_TOOL, VNCORE_TOOL, arguments..., nullptr);
    _exit(9);
  }

  // A pipe under the name of a picture: what is written into it keeps the tool waiting for more.
  std::string MakePipe() const {
    EXPECT_EQ(mkfifo(work_.File("pipe.png").c_str(), 0600), 0);
    return work_.File("pipe.png");
  }
  // Waits for the tool to have made so many files.
  void WaitForFiles(size_t work, size_t temporary) const {
    for (int i = 0;
         i < 2000 && (work_.Names().size() < work || temporary_.Names().size() < temporary); ++i) {
      usleep(5000);
    }
    EXPECT_EQ(work_.Names().size(), work);
    EXPECT_EQ(temporary_.Names().size(), temporary);
  }

  const TemporaryFolder work_, temporary_, streams_;
};

}  // namespace vn::test

#endif
