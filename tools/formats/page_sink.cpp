#include "tools/formats/page_sink.h"

#include "tools/formats/page_files.h"
#include "tools/formats/surface_picture.h"
#include "tools/terminal/failure.h"
#ifdef VNCORE_TOOL_PDF
#include "tools/formats/pdf_pages.h"
#endif

namespace vn::tool {
namespace {

class PicturePages : public PageSink {
 public:
  PicturePages(const std::string& path, int32_t pages) : files_(path, {}, pages) {}

  void Add(const Headless_Page& page) override {
    PictureInfo info = SurfaceInfo(page.surface);
    info.xDotsPerInch = info.yDotsPerInch = page.dotsPerInch;
    WriteSurface(page.surface, files_.Begin(info));
  }

  void Finish() override { files_.Finish(); }

 private:
  PageFiles files_;
};

}  // namespace

std::unique_ptr<PageSink> CreatePages(const std::string& path, int32_t pages) {
  if (!path.ends_with(".pdf") && !path.ends_with(".PDF"))
    return std::make_unique<PicturePages>(path, pages);
#ifdef VNCORE_TOOL_PDF
  return std::make_unique<PdfPages>(path);
#else
  throw Failure(path + ": this vncore was built without cairo and writes no PDF documents");
#endif
}

}  // namespace vn::tool
