#include "tools/desktop/queue_pages.h"

#include <cmath>
#include <utility>

#include "tools/desktop/temporary_file.h"
#include "tools/operations/lengths.h"
#include "tools/terminal/failure.h"
#ifdef VNCORE_TOOL_PDF
#include "tools/formats/pdf_pages.h"
#endif

namespace vn::tool {

Paper PrintablePage(const QueueWish& wish) {
  const QueuePaper& paper = wish.paper;
  const auto dots = [&](double millimetres) {
    return static_cast<int32_t>(std::floor(millimetres / kMillimetresPerInch * wish.dotsPerInch));
  };
  Paper page{dots(paper.width - paper.left - paper.right),
             dots(paper.height - paper.top - paper.bottom), wish.dotsPerInch, wish.mono};
  if (wish.landscape) std::swap(page.width, page.height);
  return page;
}

#ifdef VNCORE_TOOL_PDF

namespace {

class QueuePages : public PageSink {
 public:
  QueuePages(const PrintQueue& queue, const QueueWish& wish, std::string& name)
      : queue_(queue),
        job_{wish.title, wish.paper.name, wish.copies, wish.mono},
        name_(name),
        document_(file_.Path(), SheetOf(wish)) {}

  void Add(const Headless_Page& page) override { document_.Add(page); }
  void Finish() override {
    document_.Finish();
    name_ = queue_.Send(file_.Path(), job_);
  }

 private:
  static PdfSheet SheetOf(const QueueWish& wish) {
    const auto points = [](double length) { return length / kMillimetresPerInch * kPointsPerInch; };
    const QueuePaper& paper = wish.paper;
    return {points(paper.width), points(paper.height), points(paper.left), points(paper.top),
            wish.landscape};
  }

  const PrintQueue& queue_;
  const QueueJob job_;
  std::string& name_;
  const TemporaryFile file_{"pages", ".pdf"};
  PdfPages document_;
};

}  // namespace

std::unique_ptr<PageSink> CreateQueuePages(const PrintQueue& queue, const QueueWish& wish,
                                           std::string& name) {
  return std::make_unique<QueuePages>(queue, wish, name);
}

#else

std::unique_ptr<PageSink> CreateQueuePages(const PrintQueue&, const QueueWish&, std::string&) {
  throw Failure("this program was built without cairo and sends no pages to printers");
}

#endif

}  // namespace vn::tool
