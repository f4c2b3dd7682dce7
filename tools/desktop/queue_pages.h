// Printed pages on their way to a queue.
#ifndef VNCORE_TOOLS_QUEUE_PAGES_H
#define VNCORE_TOOLS_QUEUE_PAGES_H

#include <memory>
#include <string>

#include "tools/desktop/print_queue.h"
#include "tools/formats/page_sink.h"
#include "tools/operations/print_job.h"

namespace vn::tool {

// A job as its user wants it.
struct QueueWish {
  std::string title;
  QueuePaper paper;
  int32_t dotsPerInch = 300;
  int32_t copies = 1;
  bool landscape = false;  // pictures lie along the paper's longer side
  bool mono = false;
};

// The page that the library prints on: where the queue's printer prints on the paper.
Paper PrintablePage(const QueueWish& wish);

// A page sink whose Finish() sends all pages as one PDF document, each dot in its place on the paper;
// `name` then holds the job's. Without that call nothing reaches the queue. Throws Failure in a build
// that writes no PDF.
std::unique_ptr<PageSink> CreateQueuePages(const PrintQueue& queue, const QueueWish& wish,
                                           std::string& name);

}  // namespace vn::tool

#endif
