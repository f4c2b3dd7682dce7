// A file for the time of its work, where the system keeps such files.
#ifndef VNCORE_TOOLS_TEMPORARY_FILE_H
#define VNCORE_TOOLS_TEMPORARY_FILE_H

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "platform/headless/files/temp_names.h"
#include "tools/terminal/failure.h"

namespace vn::tool {

// Empty at first; nobody else may read it.
class TemporaryFile {
 public:
  // Its name is "vncore-", `subject`, letters of chance and `extension`. Throws Failure.
  TemporaryFile(const std::string& subject, const std::string& extension) {
    path_ = headless::TempFolder() + "vncore-" + subject + "-XXXXXX" + extension;
    const int descriptor = mkstemps(path_.data(), static_cast<int>(extension.size()));
    if (descriptor < 0) throw Failure("cannot write " + path_ + ": " + std::strerror(errno));
    close(descriptor);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { unlink(path_.c_str()); }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace vn::tool

#endif
