// A printer for the length of a test.
#ifndef VNCORE_TESTS_SUPPORT_TEST_PRINTER_H
#define VNCORE_TESTS_SUPPORT_TEST_PRINTER_H

#include <string>

#include "tests/support/bitmaps.h"
#include "tests/support/headless_control.h"

namespace vn::test {

// Notes all that it is told.
class TestPrinter {
 public:
  static constexpr int32_t kWidth = 128, kHeight = 90;

  explicit TestPrinter(int32_t bits, bool working = true) : working_(working) {
    const Headless_Printer printer = {"Test Printer,TESTDRV,LPT1:",
                                      {kWidth, kHeight, bits, 0, 0, DT_RASPRINTER, 300},
                                      bits == 1 ? 2 : 0};
    EXPECT_EQ(Headless_SetPrinter(&printer), 1);
    Headless_SetPrintSink(&Hear, this);
  }
  TestPrinter(const TestPrinter&) = delete;
  TestPrinter& operator=(const TestPrinter&) = delete;
  ~TestPrinter() {
    Headless_SetPrintSink(nullptr, nullptr);
    Headless_SetPrinter(nullptr);
  }

  std::string events;  // "P" for a page, "D" done, "A" aborted
  std::string document;
  Bytes page;  // the last one

 private:
  static int32_t Hear(void* data, Headless_PrintEvent event, const Headless_Page* page) {
    auto* self = static_cast<TestPrinter*>(data);
    self->events += "PDA"[event];
    self->document = page->document;
    const Headless_Surface& surface = page->surface;
    if (event == HEADLESS_PRINT_PAGE) {
      self->page.assign(surface.bits, surface.bits + surface.stride * kHeight);
    }
    return self->working_;
  }
  bool working_;
};

}  // namespace vn::test

#endif
