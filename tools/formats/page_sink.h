// Printed pages as files: one PDF document of the paper's size, or numbered pictures.
#ifndef VNCORE_TOOLS_PAGE_SINK_H
#define VNCORE_TOOLS_PAGE_SINK_H

#include <memory>
#include <string>

#include <vncore/platform/headless/headless.h>

namespace vn::tool {

class PageSink {
 public:
  virtual ~PageSink() = default;
  // Adds a page; its pixels are not looked at afterwards.
  virtual void Add(const Headless_Page& page) = 0;
  // Makes the pages appear under their names. Without this call nothing is left of them.
  virtual void Finish() = 0;
};

// A name that ends in ".pdf" takes one document, and so does one of a picture format that holds
// several pages. Any other takes a picture a page: NAME-1.png, NAME-2.png and so on, or just NAME.png
// when there is one. Throws Failure, at once for a name that
// cannot be written.
std::unique_ptr<PageSink> CreatePages(const std::string& path, int32_t pages);

}  // namespace vn::tool

#endif
