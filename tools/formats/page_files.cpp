#include "tools/formats/page_files.h"

#include <filesystem>
#include <utility>

#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

std::string Numbered(const std::string& path, int32_t page) {
  const std::filesystem::path name(path);
  std::filesystem::path numbered = name.parent_path() / name.stem();
  numbered += '-';
  numbered += std::to_string(page);
  numbered += name.extension();
  return numbered.string();
}

}  // namespace

PageFiles::PageFiles(const std::string& path, const FileForm& form, int32_t pages) : pages_(pages) {
  if (pages == 1 || HoldsPages(path, form)) {
    files_.push_back(OpenPictureFile(path, form));
    return;
  }
  if (path == "-") throw Failure("standard output: this format holds one page");
  for (int32_t page = 1; page <= pages; ++page)
    files_.push_back(OpenPictureFile(Numbered(path, page), form));
}

PictureSink& PageFiles::Begin(const PictureInfo& info) {
  if (files_.size() == 1 && !pictures_.empty()) {
    pictures_.front()->NextPage(info);
    return *pictures_.front();
  }
  const bool alone = files_.size() == 1;
  PictureFile& file = files_.at(pictures_.size());
  pictures_.push_back(CreatePicture(std::move(file), info, alone ? pages_ : 1));
  return *pictures_.back();
}

void PageFiles::Finish() {
  for (const auto& picture : pictures_)
    picture->Finish();
}

}  // namespace vn::tool
