#include "tools/operations/print_job.h"

#include <utility>

#include "tools/terminal/failure.h"
#include "tools/terminal/interrupt.h"

namespace vn::tool {

PrintJob::PrintJob(const Paper& paper, std::unique_ptr<PageSink> pages) : pages_(std::move(pages)) {
  const Headless_Printer printer = {
      "Pages,VNPRINT,FILE:",
      {paper.width, paper.height, paper.mono ? 1 : 24, 0, 0, DT_RASPRINTER, paper.dotsPerInch},
      paper.mono ? 2 : 0};
  if (!Headless_SetPrinter(&printer)) {
    throw Failure("there is not enough memory for a page of " + std::to_string(paper.width) + "x" +
                  std::to_string(paper.height));
  }
  Headless_SetPrintSink(&OnPrinter, this);
  context_ = Vn_PrintBitmapExt(nullptr, nullptr, 0, 0, 0, 0, 0);
  if (!context_) throw Failure("the print job cannot be opened");
}

PrintJob::~PrintJob() {
  if (context_) {
    AbortDoc(context_);
    DeleteDC(context_);
  }
  Headless_SetPrintSink(nullptr, nullptr);
  Headless_SetPrinter(nullptr);
}

void PrintJob::Print(BitmapHandle* bitmap, int32_t x, int32_t y, int32_t width, int32_t height) {
  if (!std::exchange(onFreshPage_, false)) {
    Require(EndPage(context_) > 0 && StartPage(context_) > 0);
  }
  Require(Vn_PrintBitmapExt(context_, bitmap, x, y, width, height, 0) != nullptr);
}

void PrintJob::Finish() {
  const HDC context = std::exchange(context_, nullptr);
  Require(Vn_PrintBitmapExt(context, nullptr, 0, 0, 0, 0, 1) != nullptr);
}

int32_t PrintJob::OnPrinter(void* job, Headless_PrintEvent event, const Headless_Page* page) {
  auto* self = static_cast<PrintJob*>(job);
  try {
    if (event == HEADLESS_PRINT_PAGE) self->pages_->Add(*page);
    if (event == HEADLESS_PRINT_DONE && !self->thrown_) self->pages_->Finish();
    return 1;
  } catch (...) {
    self->thrown_ = std::current_exception();
    return 0;
  }
}

void PrintJob::Require(bool printed) {
  if (printed) return;
  ThrowIfInterrupted();
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  throw Failure("the page cannot be printed");
}

}  // namespace vn::tool
