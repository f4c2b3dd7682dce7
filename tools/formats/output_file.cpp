#include "tools/formats/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/headless/files/temp_names.h"
#include "tools/terminal/failure.h"

namespace vn::tool {
namespace {

// What a newly created file may have. The mask can only be read by setting it.
mode_t UsualMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// The name at the end of a chain of links, there or not.
std::filesystem::path BehindLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  std::error_code notALink;
  for (int i = 0; i < kMostLinks; ++i) {
    const auto to = read_symlink(path, notALink);
    if (notALink) break;
    path = path.parent_path() / to;
  }
  return path;
}

}  // namespace

HiddenFile::~HiddenFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void HiddenFile::Appear() {
  if (temporary_.empty()) return;
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0)
    throw Failure("cannot write " + target_ + ": " + std::strerror(errno));
  temporary_.clear();
}

OutputFile::OutputFile(const std::string& path, bool seeks, std::vector<HiddenFile>* waiting)
    : path_(path), waiting_(waiting) {
  if (path == "-") {
    OpenStandardOutput(seeks);
    return;
  }
  struct stat status;
  const bool exists = stat(path.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) Fail(errno);  // a circle of links ends here
  const std::string target = BehindLinks(path).string();
  if (!exists) {
    OpenTemporary(target, UsualMode());
  } else if (S_ISDIR(status.st_mode)) {
    Fail(EISDIR);
  } else if (S_ISREG(status.st_mode)) {
    if (access(path.c_str(), W_OK) != 0) Fail(errno);
    // Who may do what, but never as whom: that was granted to the old contents.
    OpenTemporary(target, status.st_mode & 0777);
  } else {
    file_ = std::fopen(path.c_str(), "wb");
    if (!file_) Fail(errno);
  }
}

OutputFile::~OutputFile() {
  if (file_) std::fclose(file_);
}

void OutputFile::OpenStandardOutput(bool seeks) {
  path_ = "standard output";
  if (isatty(STDOUT_FILENO) == 1) {
    throw Failure("a picture does not go to a terminal: use > or | behind the command");
  }
  copied_ = seeks;
  const int descriptor = seeks ? headless::OpenUnlinkedTempFile() : dup(STDOUT_FILENO);
  file_ = descriptor < 0 ? nullptr : fdopen(descriptor, seeks ? "w+b" : "wb");
  if (file_) return;
  const int error = errno;
  if (descriptor >= 0) close(descriptor);
  Fail(error);
}

void OutputFile::CopyToStandardOutput() {
  char bytes[65536];
  std::rewind(file_);
  for (size_t count; (count = std::fread(bytes, 1, sizeof bytes, file_)) > 0;) {
    errno = 0;
    if (std::fwrite(bytes, 1, count, stdout) != count) Fail(errno);
  }
  if (std::ferror(file_) || std::fflush(stdout) != 0) Fail(errno);
}

void OutputFile::OpenTemporary(const std::string& target, unsigned mode) {
  const auto folder = std::filesystem::path(target).parent_path();
  std::string name = (folder / ".vncore-XXXXXX").string();
  const int descriptor = mkstemp(name.data());
  if (descriptor < 0) Fail(errno);
  // A file system that knows no permissions may refuse; the file is good without.
  [[maybe_unused]] const int refused = fchmod(descriptor, mode);
  file_ = fdopen(descriptor, "w+b");
  if (!file_) {
    const int error = errno;
    close(descriptor);
    unlink(name.c_str());
    Fail(error);
  }
  hidden_ = HiddenFile(std::move(name), target);
}

bool OutputFile::Write(const void* bytes, size_t count) noexcept {
  errno = 0;
  if (std::fwrite(bytes, 1, count, file_) == count) return true;
  error_ = errno;
  return false;
}

bool OutputFile::Read(void* to, size_t count) noexcept {
  errno = 0;
  if (std::fread(to, 1, count, file_) == count) return true;
  error_ = errno;
  return false;
}

int64_t OutputFile::Seek(int64_t offset, int whence) noexcept {
  errno = 0;
  if (fseeko(file_, offset, whence) == 0) return ftello(file_);
  error_ = errno;
  return -1;
}

const char* OutputFile::ErrorText() const noexcept { return std::strerror(error_); }

void OutputFile::Commit() {
  errno = 0;
  if (copied_) CopyToStandardOutput();
  if (std::fclose(std::exchange(file_, nullptr)) != 0) Fail(errno);
  waiting_ ? waiting_->push_back(std::move(hidden_)) : hidden_.Appear();
}

void OutputFile::Fail(int error) const {
  throw Failure("cannot write " + path_ + ": " + std::strerror(error));
}

void MakeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (std::filesystem::is_directory(path)) return;
  throw Failure("cannot write " + path + ": " + (error ? error.message() : "not a folder"));
}

}  // namespace vn::tool
