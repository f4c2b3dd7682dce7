// The pages of a result as files.
#ifndef VNCORE_TOOLS_PAGE_FILES_H
#define VNCORE_TOOLS_PAGE_FILES_H

#include <memory>
#include <string>
#include <vector>

#include "tools/formats/picture.h"

namespace vn::tool {

// NAME-PAGE.png of NAME.png.
std::string NameOfPage(const std::string& path, int32_t page);

// One file where its format holds several pages or there is one; otherwise NAME-1.png, NAME-2.png and
// so on, which are written one after the other and appear together.
class PageFiles {
 public:
  // Throws Failure, as all here do, also for a name of a page that cannot be written.
  PageFiles(const std::string& path, const FileForm& form, int32_t pages);

  // Begins the next page, which has its rows before the next call.
  PictureSink& Begin(const PictureInfo& info);
  // Makes the pages appear. Without this call nothing is left of them.
  void Finish();

 private:
  const std::string path_;
  const FileForm form_;
  const int32_t pages_;
  const bool apart_;  // a file each
  PictureFile file_;  // of all pages, until they begin
  int32_t page_ = 0;  // the present one
  std::vector<HiddenFile> complete_;
  std::unique_ptr<PictureSink> picture_;
};

}  // namespace vn::tool

#endif
