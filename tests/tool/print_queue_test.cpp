// vncore print to a real print scheduler: what its queue gets shows each dot in its place.
#include <fstream>

#include "tests/support/print_server.h"
#include "tests/tool/command.h"

namespace vn::test {
namespace {

constexpr int32_t kColumns = 70, kRows = 40;
constexpr int32_t kDotPixels = 4;  // a renderer that enlarges so much repeats the dots
constexpr int32_t kMargin = 18;    // points, left, above and right

class PrintQueue : public Command {
 protected:
  // Prints what has this number.
  void Print(const std::string& arguments, int number) const {
    const Outcome outcome = Run("print " + arguments);
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.out, "office-" + std::to_string(number) + "\n");
  }
  // A page of the job, kDotPixels pixels for a dot.
  Seen Page(int number, int dots) const {
    const std::string command = "pdftoppm -png -singlefile -r " +
                                std::to_string(dots * kDotPixels) + " '" +
                                server_.JobFile(number, ".pdf") + "' '" + work_.File("page") + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return Look("page.png");
  }

  const PrintServer server_;
};

TEST_F(PrintQueue, GetsJobsAsTheyWereAsked) {
  if (!server_.works()) GTEST_SKIP() << "NO PRINT SCHEDULER: " << server_.Log();
  Make("in.png", kColumns, kRows);
  Make("bits.png", kColumns, kRows, 1);
  EXPECT_NE(Run("print --list").out.find("(default) The office"), std::string::npos);
  EXPECT_NE(Run("print --list --printer office").out.find("iso_a4"), std::string::npos);

  const std::string place = " --at 30,50 --size " + std::to_string(kColumns) + "x" +
                            std::to_string(kRows) + " --printer ";
  const auto expect = [&](const Seen& page, const std::string& picture, auto toX, auto toY) {
    const Seen in = Look(picture);
    for (int32_t y = 0; y < kRows; ++y) {
      for (int32_t x = 0; x < kColumns; ++x) {
        const Rgb shown = page.At(toX(x, y) + kDotPixels / 2, toY(x, y) + kDotPixels / 2);
        ASSERT_EQ(shown, in.At(x, y)) << x << ", " << y;
      }
    }
  };
  // The queue's own resolution and paper.
  Print("in.png" + place + "default", 1);
  const Seen upright = Page(1, 75);
  EXPECT_NEAR(upright.width, 148 * 75 * kDotPixels / 25.4, 20);
  int32_t margin = kMargin * 75 * kDotPixels / 72;
  expect(
      upright, "in.png", [&](int32_t x, int32_t) { return margin + (30 + x) * kDotPixels; },
      [&](int32_t, int32_t y) { return margin + (50 + y) * kDotPixels; });

  // On its side: columns go down the sheet, from its upper right corner on.
  Print("bits.png" + place + "office --paper A4 --landscape --dpi 100 --copies 3", 2);
  const Seen turned = Page(2, 100);
  EXPECT_NEAR(turned.height, 297 * 100 * kDotPixels / 25.4, 20);
  margin = kMargin * 100 * kDotPixels / 72;
  const int32_t columns = (turned.width - 2 * margin) / kDotPixels;
  expect(
      turned, "bits.png",
      [&](int32_t, int32_t y) { return margin + (columns - 1 - 50 - y) * kDotPixels; },
      [&](int32_t x, int32_t) { return margin + (30 + x) * kDotPixels; });
  std::ifstream told(server_.JobFile(2, ".told"));
  std::string title, copies, options;
  std::getline(std::getline(std::getline(told, title), copies), options);
  EXPECT_EQ(title + " " + copies, "bits.png 3");
  EXPECT_NE(options.find("media=iso_a4_210x297mm"), std::string::npos) << options;

  for (const char* const wrong : {"in.png --printer attic", "in.png --printer office --paper A3",
                                  "in.png --copies 2 -o a.pdf"})
    ExpectFails(std::string("print ") + wrong);
  ExpectFails("print in.png --printer office", "CUPS_SERVER=/missing");

  // A job that is stopped never reaches the queue.
  const std::string pipe = MakePipe();
  const pid_t child = fork();
  if (child == 0) Become("print", "in.png", "pipe.png", "--printer", "office");
  std::ofstream writer(pipe);  // opens when the tool does, which has then printed a page
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0)
    kill(child, SIGTERM), usleep(10000);  // one that comes before the tool reads lets it read
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  EXPECT_EQ(temporary_.Names(), Names{});
  Print("in.png --printer office", 3);
}

}  // namespace
}  // namespace vn::test
