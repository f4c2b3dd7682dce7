// Printing: placement on the page, the life of a job, and what stands on the page.
#ifndef _WIN32

#include "device/page_layout.h"
#include "kernel/guards.h"
#include "kernel/thread_settings.h"
#include "tests/support/pixel_set.h"
#include "tests/support/screen.h"
#include "tests/support/status_log.h"
#include "tests/support/storage_kinds.h"
#include "tests/support/test_printer.h"

namespace vn::test {
namespace {

constexpr int32_t kWidth = TestPrinter::kWidth, kHeight = TestPrinter::kHeight;

TEST(Print, PlacesPicturesOnThePage) {
  const RECT page = {1, 1, 1001, 801};
  const auto placed = [&](int32_t w, int32_t h, const Placement& wanted) {
    return Text(PlaceOnPage(page, w, h, wanted));
  };
  EXPECT_EQ(placed(600, 300, {0, 0, 0, 0}), "1,151,1001,651");
  EXPECT_EQ(placed(300, 600, {0, 0, 0, 0}), "301,1,701,801");
  EXPECT_EQ(placed(600, 300, {20, 30, 300, 0}), "20,30,320,180");
  EXPECT_EQ(placed(600, 300, {20, 30, 0, 150}), "20,30,320,180");
  EXPECT_EQ(placed(10, 10, {0, 5, 501, 10}), "250,5,751,15");
  EXPECT_EQ(placed(10, 10, {900, 700, 200, 200}), "900,700,1001,801");
  EXPECT_EQ(placed(10, 10, {-50, -50, 100, 100}), "1,1,50,50");
  for (const Placement& off : {Placement{2000, 5, 10, 10}, Placement{5, 5, -10, 10},
                               Placement{INT32_MAX - 3, 5, 10, 10}}) {
    EXPECT_EQ(placed(10, 10, off), "0,0,0,0");
  }
  EXPECT_EQ(placed(10, 0, {0, 0, 0, 0}), "0,0,0,0");  // no aspect, no picture
}

TEST(Print, KeepsOneJobUntilItsLastCall) {
  TestPrinter printer(24);
  Bitmap bitmap(20, 10, 24);
  Vn_ClearBitmap(bitmap);
  const HDC job = Vn_PrintBitmap(bitmap, 5, 5, 20, 10, 0);
  ASSERT_NE(job, nullptr);
  EXPECT_EQ(Vn_PrintBitmap(bitmap, 50, 5, 20, 10, 0), job);
  EXPECT_EQ(printer.events, "");
  EXPECT_EQ(Vn_PrintBitmap(bitmap, 5, 50, 20, 10, 1), job);
  EXPECT_EQ(CurrentThreadSettings().PrintJobDC, nullptr);
  EXPECT_EQ(printer.events, "PD");
  EXPECT_EQ(printer.document, "VORN GRAPHIC");
  // Black where a picture stands, white paper elsewhere.
  const auto at = [&](size_t x, size_t y) { return printer.page[(y * kWidth + x) * 3]; };
  for (const auto& [x, y] : {std::pair{5, 5}, {24, 14}, {50, 5}, {69, 14}, {5, 50}, {24, 59}})
    EXPECT_EQ(at(x, y), 0) << x << ", " << y;
  for (const auto& [x, y] : {std::pair{4, 5}, {25, 14}, {49, 5}, {5, 60}, {119, 89}})
    EXPECT_EQ(at(x, y), 255) << x << ", " << y;

  EXPECT_NE(Vn_PrintBitmap(nullptr, 0, 0, 0, 0, 1), nullptr);  // an empty page
  EXPECT_EQ(printer.events, "PDPD");
  EXPECT_EQ(printer.page, Bytes(printer.page.size(), 255));
}

TEST(Print, PrintsWhatAPaintShows) {
  for (const int32_t bits : {1, 24}) {
    WithEachStorage([&](const StorageKind& kind) {
      TestPrinter printer(bits);
      Random random(bits);
      RandomBitmap bitmap(random, 37, 23, 24, kind.request);
      const DisplayScope display({kWidth, kHeight, bits, 0, 0, DT_RASDISPLAY, 96});
      const Bytes expected = [&] {
        const DisplayModeScope mode(
            ~0u, MODE_DITHER | (bits == 1 ? MODE_ORDERED_DITHER | MODE_CLUSTERED_MATRIX : 0));
        const ScreenDC context;
        const RECT where = {7, 3, 107, 83};
        return ShownBy(context.get(), WHITENESS, [&] {
          Vn_PaintDC(context.get(), bitmap, nullptr, nullptr, &where, nullptr, SRCCOPY);
        });
      }();

      EXPECT_NE(Vn_PrintBitmap(bitmap, 7, 3, 100, 80, 1), nullptr);
      EXPECT_EQ(printer.page, expected) << "in one paint";
      const StatusLog log;
      EXPECT_NE(Vn_PrintBitmap(bitmap, 7, 3, 100, 80, 1), nullptr);
      EXPECT_EQ(printer.page, expected) << "row by row";
      EXPECT_EQ(log.percents(), ExpectedPercents(80));
      EXPECT_EQ(Vn_GetDisplayMode(), uint32_t{MODE_DEVICE_INDEXES | MODE_DITHER});
    });
  }
}

TEST(Print, AbortsItsOwnJobWhenStopped) {
  TestPrinter printer(24);
  Bitmap bitmap(20, 10, 24);
  {
    const StatusLog log(3);
    EXPECT_EQ(Vn_PrintBitmap(bitmap, 0, 0, 0, 0, 0), nullptr);
    EXPECT_EQ(printer.events, "A");
    EXPECT_EQ(CurrentThreadSettings().PrintJobDC, nullptr);
  }
  // A job that was there goes on until its caller ends it, half-way through the third picture too.
  const HDC job = Vn_PrintBitmapExt(nullptr, bitmap, 5, 5, 0, 0, 0);
  EXPECT_EQ(Vn_PrintBitmapExt(job, bitmap, 40, 5, 20, 0, 0), job);
  {
    const StatusLog log(6);
    EXPECT_EQ(Vn_PrintBitmapExt(job, bitmap, 5, 40, 0, 10, 0), nullptr);
  }
  EXPECT_EQ(printer.events, "A");
  AbortDoc(job);
  DeleteDC(job);
  EXPECT_EQ(printer.events, "AA");
  const HDC second = Vn_PrintBitmapExt(nullptr, nullptr, 0, 0, 0, 0, 0);
  const StatusLog log(1);
  EXPECT_EQ(Vn_PrintBitmapExt(second, bitmap, 0, 0, 0, 0, 1), nullptr);
  EXPECT_EQ(printer.events, "AAPD");
}

TEST(Print, FastSendsRowsInEitherOrder) {
  for (const int32_t bits : {1, 8, 24, 32}) {
    for (const uint32_t origin : {VIEW_TOP_FIRST, VIEW_BOTTOM_FIRST}) {
      TestPrinter printer(24);
      Random random(7);
      Bitmap bitmap(33, 21, bits, origin);
      FillRandom(bitmap, random);
      const Bytes before = ReadAll(bitmap);
      EXPECT_NE(Vn_PrintBitmapExt(nullptr, bitmap, 5, 6, 33, 21, 1), nullptr);
      const Bytes expected = printer.page;
      const StatusLog log(1);  // is not asked on the fast way
      if (bits != 32) {
        EXPECT_NE(Vn_PrintBitmapFast(nullptr, bitmap, 5, 6, 33, 21, 1), nullptr);
        EXPECT_TRUE(log.percents().empty());
        EXPECT_EQ(printer.page, expected) << bits << " bits, origin " << origin;
      } else {
        EXPECT_EQ(Vn_PrintBitmapFast(nullptr, bitmap, 5, 6, 33, 21, 1), nullptr);
      }
      EXPECT_EQ(ReadAll(bitmap), before);
    }
  }
}

TEST(Print, TellsAPrinterThatFails) {
  Bitmap bitmap(20, 10, 24);
  EXPECT_EQ(Vn_PrintBitmap(bitmap, 0, 0, 0, 0, 1), nullptr);  // there is none
  TestPrinter printer(24, false);
  EXPECT_EQ(Vn_PrintBitmapFast(nullptr, bitmap, 5, 5, 20, 10, 1), nullptr);
  EXPECT_EQ(printer.events, "PD");
}

}  // namespace
}  // namespace vn::test

#endif
