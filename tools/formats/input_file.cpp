#include "tools/formats/input_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/headless/files/temp_names.h"
#include "tools/terminal/failure.h"

namespace vn::tool {

namespace {

// A stream of standard input's own, from its beginning where it has one.
std::FILE* OpenStandardInput() {
  const int descriptor = dup(STDIN_FILENO);
  if (descriptor < 0) return nullptr;
  lseek(descriptor, 0, SEEK_SET);
  std::FILE* const file = fdopen(descriptor, "rb");
  if (!file) close(descriptor);
  return file;
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : path_(path == "-" ? "standard input" : path),
      file_(path == "-" ? OpenStandardInput() : std::fopen(path.c_str(), "rb")),
      standard_(path == "-") {
  if (!file_) throw Failure("cannot open " + path_ + ": " + std::strerror(errno));
  errno = 0;
  headCount_ = std::fread(head_, 1, kHeadBytes, file_.get());
  if (headCount_ < kHeadBytes && std::ferror(file_.get())) {
    throw Failure("cannot read " + path_ + ": " + std::strerror(errno));
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
  bool moved = fseeko(file_.get(), offset, whence) == 0;
  if (!moved && errno == ESPIPE && standard_ && headUsed_ == 0 && SpoolStandardInput()) {
    moved = fseeko(file_.get(), offset, whence) == 0;
  }
  error_ = moved ? 0 : errno;
  if (!moved) return -1;
  headUsed_ = headCount_;
  return ftello(file_.get());
}

void InputFile::Rewind() {
  if (Seek(0, SEEK_SET) == 0) return;
  if (error_ == ESPIPE)
    throw Failure(path_ +
                  ": a file of its format is not read in its order, so it cannot be a pipe");
  const std::string failed =
      standard_ ? "cannot keep standard input in a temporary file" : "cannot read " + path_;
  throw Failure(failed + ": " + std::strerror(error_));
}

bool InputFile::SpoolStandardInput() noexcept {
  const int descriptor = headless::OpenUnlinkedTempFile();
  std::FILE* const copy = descriptor < 0 ? nullptr : fdopen(descriptor, "w+b");
  if (!copy) {
    if (descriptor >= 0) close(descriptor);
    return false;
  }
  std::unique_ptr<std::FILE, Close> spool(copy);
  bool written = std::fwrite(head_, 1, headCount_, copy) == headCount_;
  char bytes[65536];
  for (size_t count; written && (count = std::fread(bytes, 1, sizeof bytes, file_.get())) > 0;)
    written = std::fwrite(bytes, 1, count, copy) == count;
  written = written && !std::ferror(file_.get()) && std::fflush(copy) == 0;
  if (!written || dup2(fileno(copy), STDIN_FILENO) < 0) return false;
  std::rewind(copy);
  file_ = std::move(spool);
  return true;
}

const char* InputFile::ErrorText() const noexcept {
  return error_ ? std::strerror(error_) : "the file is truncated";
}

}  // namespace vn::tool
