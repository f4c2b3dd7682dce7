// Printed pages as documents: one shows what a paint shows, and an aborted job leaves nothing.
#include <cstdlib>
#include <cstring>

#include "kernel/guards.h"
#include "kernel/platform_objects.h"
#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"
#include "tests/support/status_log.h"
#include "tests/support/temporary_folder.h"
#include "tests/tool/seen.h"
#include "tools/formats/page_sink.h"

namespace vn::test {
namespace {

constexpr int32_t kWidth = 300, kHeight = 200, kDots = 100;
// A renderer that enlarges so much repeats the page's dots, and mixes them below.
constexpr int32_t kZoom = 4;
constexpr RECT kPlaces[] = {{10, 10, 110, 70}, {130, 20, 290, 120}, {40, 130, 140, 190}};

class PrintedPages : public testing::Test {
 protected:
  PrintedPages() : pages_(tool::CreatePages(folder_.File("pages.pdf"), 1)) {
    const Headless_Printer printer = {
        "Pages,PAGES,FILE:", {kWidth, kHeight, 24, 0, 0, DT_RASPRINTER, kDots}, 0};
    EXPECT_EQ(Headless_SetPrinter(&printer), 1);
    Headless_SetPrintSink(&Hear, pages_.get());
  }
  ~PrintedPages() override {
    Headless_SetPrintSink(nullptr, nullptr);
    Headless_SetPrinter(nullptr);
  }

  static int32_t Hear(void* pages, Headless_PrintEvent event, const Headless_Page* page) {
    auto* const sink = static_cast<tool::PageSink*>(pages);
    if (event == HEADLESS_PRINT_PAGE) sink->Add(*page);
    if (event == HEADLESS_PRINT_DONE) sink->Finish();
    return 1;
  }

  // One of the three pictures; the last one ends the job.
  HDC Print(size_t which) {
    const RECT& at = kPlaces[which];
    return Vn_PrintBitmap(pictures_[which].get(), at.left, at.top, at.right - at.left,
                          at.bottom - at.top, which == 2);
  }

  void SetUp() override {
    Random random(3);
    for (Bitmap& picture : pictures_)
      FillRandom(picture, random);
  }

  const TemporaryFolder folder_;
  std::unique_ptr<tool::PageSink> pages_;
  Bitmap pictures_[3]{{50, 30, 24}, {40, 25, 8}, {100, 60, 1}};
};

TEST_F(PrintedPages, ShowWhatAPaintShows) {
  const StatusLog log;  // row by row
  for (size_t i = 0; i < 3; ++i)
    ASSERT_NE(Print(i), nullptr);
  ASSERT_EQ(folder_.Names(), std::vector<std::string>{"pages.pdf"});
  const std::string rendered = folder_.File("page");
  const std::string dots = std::to_string(kZoom * kDots);
  const std::string command =
      "pdftoppm -png -singlefile -r " + dots + " " + folder_.File("pages.pdf") + " " + rendered;
  ASSERT_EQ(std::system(command.c_str()), 0);

  const DisplayScope display({kWidth, kHeight, 24, 0, 0, DT_RASDISPLAY, kDots});
  const ScreenDC screen;
  PatBlt(screen.get(), 0, 0, kWidth, kHeight, WHITENESS);
  const DisplayModeScope mode(MODE_DITHER | MODE_DEVICE_INDEXES, 0);
  for (size_t i = 0; i < 3; ++i) {
    ASSERT_EQ(
        Vn_PaintDC(screen.get(), pictures_[i], nullptr, nullptr, &kPlaces[i], nullptr, SRCCOPY),
        OK);
  }
  const Seen seen = Look(rendered + ".png");
  ASSERT_TRUE(seen.width == kZoom * kWidth && seen.height == kZoom * kHeight);
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) {
      const Rgb shown = seen.At(kZoom * x + kZoom / 2, kZoom * y + kZoom / 2);
      ASSERT_EQ(shown, ColorOf(GetPixel(screen.get(), x, y))) << x << ", " << y;
    }
  }
}

TEST_F(PrintedPages, LeaveNothingWhenTheJobIsAborted) {
  Headless_Counts before, after;
  Headless_GetCounts(&before);
  const HDC job = Print(0);
  ASSERT_NE(job, nullptr);
  {
    const StatusLog log(51);  // half-way down the second picture
    EXPECT_EQ(Print(1), nullptr);
  }
  // A picture that is not the job's first leaves the job to its caller.
  EXPECT_GT(AbortDoc(job), 0);
  EXPECT_TRUE(DeleteDC(job));
  pages_.reset();
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{});
  Headless_GetCounts(&after);
  EXPECT_EQ(after.contexts, before.contexts);
  EXPECT_EQ(after.objects, before.objects);
}

}  // namespace
}  // namespace vn::test
