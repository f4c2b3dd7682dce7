#include "tools/formats/page_files.h"

#include <filesystem>
#include <utility>

#include "tools/terminal/failure.h"

namespace vn::tool {

std::string NameOfPage(const std::string& path, int32_t page) {
  const std::filesystem::path name(path);
  std::filesystem::path numbered = name.parent_path() / name.stem();
  numbered += '-';
  numbered += std::to_string(page);
  numbered += name.extension();
  return numbered.string();
}

PageFiles::PageFiles(const std::string& path, const FileForm& form, int32_t pages)
    : path_(path), form_(form), pages_(pages), apart_(pages > 1 && !HoldsPages(path, form)) {
  if (!apart_) {
    file_ = OpenPictureFile(path, form);
    return;
  }
  if (path == "-") throw Failure("standard output: this format holds one page");
  for (int32_t page = 1; page <= pages; ++page)
    OpenPictureFile(NameOfPage(path, page), form);
}

PictureSink& PageFiles::Begin(const PictureInfo& info) {
  if (apart_) {
    if (picture_) picture_->Finish();
    picture_ = CreatePicture(OpenPictureFile(NameOfPage(path_, ++page_), form_, &complete_), info);
  } else if (picture_) {
    picture_->NextPage(info);
  } else {
    picture_ = CreatePicture(std::move(file_), info, pages_);
  }
  return *picture_;
}

void PageFiles::Finish() {
  if (picture_) picture_->Finish();
  for (HiddenFile& file : complete_)
    file.Appear();
}

}  // namespace vn::tool
