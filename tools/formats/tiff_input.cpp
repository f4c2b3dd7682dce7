#include "tools/formats/tiff_input.h"

#include <algorithm>
#include <utility>

#include "tools/formats/picture.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

tmsize_t OnRead(thandle_t handle, void* to, tmsize_t count) {
  auto* file = static_cast<InputFile*>(handle);
  const size_t read = file->ReadSome(to, static_cast<size_t>(count));
  return file->HasError() ? -1 : static_cast<tmsize_t>(read);
}

tmsize_t OnWrite(thandle_t, void*, tmsize_t) { return -1; }

toff_t OnSeek(thandle_t handle, toff_t offset, int whence) {
  auto* file = static_cast<InputFile*>(handle);
  return static_cast<toff_t>(file->Seek(static_cast<int64_t>(offset), whence));
}

toff_t OnSize(thandle_t handle) {
  auto* file = static_cast<InputFile*>(handle);
  const int64_t position = file->Seek(0, SEEK_CUR);
  const int64_t size = file->Seek(0, SEEK_END);
  file->Seek(position, SEEK_SET);
  return static_cast<toff_t>(std::max<int64_t>(size, 0));
}

}  // namespace

TiffInput::TiffInput(std::unique_ptr<InputFile> file, int32_t page) : file_(std::move(file)) {
  file_->Rewind();
  // With the places of strips left for whoever wants rows: there may be many.
  tiff_ = OpenTiff(Path(), "rD", file_.get(), {&OnRead, &OnWrite, &OnSeek, &OnSize}, &error_);
  if (!tiff_) Fail();
  pages_ = std::max<int32_t>(TIFFNumberOfDirectories(Get()), 1);
  RequirePage(Path(), page, pages_);
  if (page > 1 && TIFFSetDirectory(Get(), static_cast<tdir_t>(page - 1)) != 1) Fail();
  error_.text[0] = '\0';  // told of fields that do not matter
}

void TiffInput::Fail() const {
  const char* const text = file_->HasError() ? file_->ErrorText() : error_.text;
  Fail(std::string(text[0] ? text : "the file is damaged"));
}

void TiffInput::Fail(const std::string& text) const { throw Failure(Path() + ": " + text); }

}  // namespace vn::tool
