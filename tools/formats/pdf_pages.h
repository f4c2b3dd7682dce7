// Pages as a PDF document, through cairo.
#ifndef VNCORE_TOOLS_PDF_PAGES_H
#define VNCORE_TOOLS_PDF_PAGES_H

#include <cairo.h>

#include <memory>
#include <optional>

#include "tools/formats/destroyer.h"
#include "tools/formats/output_file.h"
#include "tools/formats/page_sink.h"

namespace vn::tool {

using CairoSurface = std::unique_ptr<cairo_surface_t, Destroyer<&cairo_surface_destroy>>;

inline constexpr double kPointsPerInch = 72;

// Paper around the picture of a page, in points.
struct PdfSheet {
  double width, height, left, top;
  bool onItsSide;  // a quarter turn clockwise brings the picture onto the sheet
};

// Each page is its picture at the paper's size, or on a sheet. Pictures of grays or of black and white
// are stored as such.
class PdfPages : public PageSink {
 public:
  explicit PdfPages(const std::string& path, std::optional<PdfSheet> sheet = std::nullopt);

  void Add(const Headless_Page& page) override;
  void Finish() override;

 private:
  void Check(cairo_status_t status) const;

  const std::optional<PdfSheet> sheet_;
  OutputFile file_;
  CairoSurface document_;
};

}  // namespace vn::tool

#endif
