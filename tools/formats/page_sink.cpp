#include "tools/formats/page_sink.h"

#include <filesystem>
#include <vector>

#include "tools/formats/surface_picture.h"
#include "tools/terminal/failure.h"
#ifdef VNCORE_TOOL_PDF
#include "tools/formats/pdf_pages.h"
#endif

namespace vn::tool {
namespace {

// Pictures wait, complete but for their names, until the document is.
class PicturePages : public PageSink {
 public:
  PicturePages(const std::string& path, int32_t pages) {
    const std::filesystem::path name(path);
    for (int32_t page = 1; page <= pages; ++page) {
      std::filesystem::path numbered = name.parent_path() / name.stem();
      numbered += '-';
      numbered += std::to_string(page);
      numbered += name.extension();
      files_.push_back(OpenPictureFile(pages == 1 ? path : numbered.string()));
    }
  }

  void Add(const Headless_Page& page) override {
    PictureInfo info = SurfaceInfo(page.surface);
    info.xDotsPerInch = info.yDotsPerInch = page.dotsPerInch;
    auto& file = files_.at(static_cast<size_t>(page.number) - 1);
    pictures_.push_back(CreatePicture(std::move(file), info));
    WriteSurface(page.surface, *pictures_.back());
  }

  void Finish() override {
    for (const auto& picture : pictures_)
      picture->Finish();
  }

 private:
  std::vector<std::unique_ptr<OutputFile>> files_;
  std::vector<std::unique_ptr<PictureSink>> pictures_;
};

}  // namespace

std::unique_ptr<PageSink> CreatePages(const std::string& path, int32_t pages) {
  if (std::filesystem::path(path).extension() != ".pdf") {
    return std::make_unique<PicturePages>(path, pages);
  }
#ifdef VNCORE_TOOL_PDF
  return std::make_unique<PdfPages>(path);
#else
  throw Failure(path + ": this vncore was built without cairo and writes no PDF documents");
#endif
}

}  // namespace vn::tool
