// Pages as a PDF document, through cairo.
#ifndef VNCORE_TOOLS_PDF_PAGES_H
#define VNCORE_TOOLS_PDF_PAGES_H

#include <cairo.h>

#include <memory>

#include "tools/formats/output_file.h"
#include "tools/formats/page_sink.h"

namespace vn::tool {

struct CairoDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

// Each page is its picture at the paper's size. Pictures of grays or of black and white are stored
// as such.
class PdfPages : public PageSink {
 public:
  explicit PdfPages(const std::string& path);

  void Add(const Headless_Page& page) override;
  void Finish() override;

 private:
  void Check(cairo_status_t status) const;

  OutputFile file_;
  std::unique_ptr<cairo_surface_t, CairoDeleter> document_;
};

}  // namespace vn::tool

#endif
