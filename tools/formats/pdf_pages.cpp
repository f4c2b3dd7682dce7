#include "tools/formats/pdf_pages.h"

#include <cairo-pdf.h>

#include <cstring>

#include "kernel/pixel_format.h"
#include "tools/formats/surface_picture.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

constexpr double kQuarterTurn = 1.57079632679489662;

cairo_status_t WriteBytes(void* file, const unsigned char* bytes, unsigned count) {
  return static_cast<OutputFile*>(file)->Write(bytes, count) ? CAIRO_STATUS_SUCCESS
                                                             : CAIRO_STATUS_WRITE_ERROR;
}

// Rows of the kernel into an image of cairo's: words of blue, green, red and an idle byte.
class ImageRows : public PictureSink {
 public:
  ImageRows(cairo_surface_t* image, const PictureInfo& info)
      : image_(image), info_(info), at_(cairo_image_surface_get_data(image)) {
    cairo_surface_flush(image_);
  }

  void WriteRow(const uint8_t* row) override {
    const bool fits = WithDepth(info_.bits, [&](auto bits) {
      const PixelReader<bits> pixel{row, info_.colors.data()};
      for (int32_t x = 0; x < info_.width; ++x)
        PutColor<32, ORDER_BGR>(at_, static_cast<size_t>(x), pixel(static_cast<size_t>(x)));
    });
    if (!fits) throw Failure("no page can have this depth");
    at_ += cairo_image_surface_get_stride(image_);
  }
  void Finish() override { cairo_surface_mark_dirty(image_); }

 private:
  cairo_surface_t* image_;
  const PictureInfo& info_;
  unsigned char* at_;
};

}  // namespace

PdfPages::PdfPages(const std::string& path, std::optional<PdfSheet> sheet)
    : sheet_(sheet),
      file_(path),
      document_(cairo_pdf_surface_create_for_stream(&WriteBytes, &file_, 1, 1)) {
  Check(cairo_surface_status(document_.get()));
}

void PdfPages::Add(const Headless_Page& page) {
  const PictureInfo info = SurfaceInfo(page.surface);
  const CairoSurface image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, info.width, info.height));
  Check(cairo_surface_status(image.get()));
  ImageRows rows(image.get(), info);
  WriteSurface(page.surface, rows);
  rows.Finish();

  const double points = kPointsPerInch / page.dotsPerInch;
  const double width = info.width * points, height = info.height * points;
  const PdfSheet sheet = sheet_.value_or(PdfSheet{width, height, 0, 0, false});
  cairo_pdf_surface_set_size(document_.get(), sheet.width, sheet.height);
  const std::unique_ptr<cairo_t, Destroyer<&cairo_destroy>> context(cairo_create(document_.get()));
  cairo_translate(context.get(), sheet.left, sheet.top);
  if (sheet.onItsSide) {
    cairo_translate(context.get(), height, 0);
    cairo_rotate(context.get(), kQuarterTurn);
  }
  cairo_scale(context.get(), points, points);
  cairo_set_source_surface(context.get(), image.get(), 0, 0);
  // A reader that scales the page shows the dots as they are.
  cairo_pattern_set_filter(cairo_get_source(context.get()), CAIRO_FILTER_NEAREST);
  cairo_paint(context.get());
  cairo_show_page(context.get());
  Check(cairo_status(context.get()));
}

void PdfPages::Finish() {
  cairo_surface_finish(document_.get());
  Check(cairo_surface_status(document_.get()));
  file_.Commit();
}

void PdfPages::Check(cairo_status_t status) const {
  if (status == CAIRO_STATUS_SUCCESS) return;
  throw Failure(file_.Path() + ": " +
                (file_.HasError() ? file_.ErrorText() : cairo_status_to_string(status)));
}

}  // namespace vn::tool
