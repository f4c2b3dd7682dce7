#include "tools/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/failure.h"

namespace vn::tool {

InputFile::InputFile(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "rb")) {
  if (!file_) throw Failure("cannot open " + path + ": " + std::strerror(errno));
  errno = 0;
  headCount_ = std::fread(head_, 1, kHeadBytes, file_.get());
  if (headCount_ < kHeadBytes && std::ferror(file_.get())) {
    throw Failure("cannot read " + path + ": " + std::strerror(errno));
  }
}

bool InputFile::Read(void* to, size_t count) noexcept {
  auto* at = static_cast<uint8_t*>(to);
  const size_t kept = std::min(count, headCount_ - headUsed_);
  std::memcpy(at, head_ + headUsed_, kept);
  headUsed_ += kept;
  errno = 0;
  if (std::fread(at + kept, 1, count - kept, file_.get()) == count - kept) return true;
  error_ = std::ferror(file_.get()) ? errno : 0;
  return false;
}

const char* InputFile::ErrorText() const noexcept {
  return error_ ? std::strerror(error_) : "the file is truncated";
}

}  // namespace vn::tool
