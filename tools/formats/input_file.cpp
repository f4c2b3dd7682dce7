#include "tools/formats/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/terminal/failure.h"

namespace vn::tool {

InputFile::InputFile(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "rb")) {
  if (!file_) throw Failure("cannot open " + path + ": " + std::strerror(errno));
  errno = 0;
  headCount_ = std::fread(head_, 1, kHeadBytes, file_.get());
  if (headCount_ < kHeadBytes && std::ferror(file_.get())) {
    throw Failure("cannot read " + path + ": " + std::strerror(errno));
  }
}

bool InputFile::Read(void* to, size_t count) noexcept { return ReadSome(to, count) == count; }

size_t InputFile::ReadSome(void* to, size_t count) noexcept {
  auto* at = static_cast<uint8_t*>(to);
  const size_t kept = std::min(count, headCount_ - headUsed_);
  std::memcpy(at, head_ + headUsed_, kept);
  headUsed_ += kept;
  errno = 0;
  const size_t read = std::fread(at + kept, 1, count - kept, file_.get());
  if (read < count - kept) error_ = std::ferror(file_.get()) ? errno : 0;
  return kept + read;
}

int64_t InputFile::Seek(int64_t offset, int whence) noexcept {
  if (whence == SEEK_CUR) offset -= static_cast<int64_t>(headCount_ - headUsed_);
  errno = 0;
  const bool moved = fseeko(file_.get(), offset, whence) == 0;
  error_ = moved ? 0 : errno;
  if (!moved) return -1;
  headUsed_ = headCount_;
  return ftello(file_.get());
}

const char* InputFile::ErrorText() const noexcept {
  return error_ ? std::strerror(error_) : "the file is truncated";
}

}  // namespace vn::tool
