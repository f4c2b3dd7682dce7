// Printing on the headless platform's printer, with its pages going to files.
#ifndef VNCORE_TOOLS_PRINT_JOB_H
#define VNCORE_TOOLS_PRINT_JOB_H

#include <exception>
#include <memory>

#include <vncore/platform/headless/headless.h>
#include <vncore/vncore.h>
#include "tools/formats/page_sink.h"

namespace vn::tool {

// The sheet of paper, all of it printable.
struct Paper {
  int32_t width, height;  // pixels
  int32_t dotsPerInch;
  bool mono;  // black dots; else 24 bits
};

// A job with one document. Unless it is finished, its end aborts it, and no file is left.
class PrintJob {
 public:
  PrintJob(const Paper& paper, std::unique_ptr<PageSink> pages);
  PrintJob(const PrintJob&) = delete;
  PrintJob& operator=(const PrintJob&) = delete;
  ~PrintJob();

  // Prints on a page of its own; 0 leaves a position centred and a size to the aspect. Throws
  // Failure or Interruption.
  void Print(BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width, int32_t height);
  void Finish();

 private:
  static int32_t OnPrinter(void* job, Headless_PrintEvent event, const Headless_Page* page);
  // Throws what the sink threw within the printer.
  void Require(bool printed);

  std::unique_ptr<PageSink> pages_;
  std::exception_ptr thrown_;
  HDC context_ = nullptr;
  bool onFreshPage_ = true;
};

}  // namespace vn::tool

#endif
