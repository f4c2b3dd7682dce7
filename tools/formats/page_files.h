// The pages of a result as files.
#ifndef VNCORE_TOOLS_PAGE_FILES_H
#define VNCORE_TOOLS_PAGE_FILES_H

#include <memory>
#include <string>
#include <vector>

#include "tools/formats/picture.h"

namespace vn::tool {

// One file where its format holds several pages or there is one; otherwise NAME-1.png, NAME-2.png and
// so on. All are opened at once, and appear together.
class PageFiles {
 public:
  // Throws Failure, as all here do.
  PageFiles(const std::string& path, const FileForm& form, int32_t pages);

  // Begins the next page, which has its rows before the next call.
  PictureSink& Begin(const PictureInfo& info);
  // Makes the pages appear. Without this call nothing is left of them.
  void Finish();

 private:
  std::vector<PictureFile> files_;
  std::vector<std::unique_ptr<PictureSink>> pictures_;
  const int32_t pages_;
};

}  // namespace vn::tool

#endif
