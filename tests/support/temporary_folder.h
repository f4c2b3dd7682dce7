// Folders that live as long as a test, and whole files.
#ifndef VNCORE_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define VNCORE_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace vn::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vncore-test-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string Path() const { return path_.string(); }
  std::string File(const std::string& name) const { return (path_ / name).string(); }
  // The names of all that lies in it, sorted.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path path_;
};

// Where the system's temporary files go, for the length of a scope.
class TempDirScope {
 public:
  explicit TempDirScope(const std::string& path) {
    if (const char* before = getenv("TMPDIR")) before_ = before;
    setenv("TMPDIR", path.c_str(), 1);
  }
  TempDirScope(const TempDirScope&) = delete;
  TempDirScope& operator=(const TempDirScope&) = delete;
  ~TempDirScope() {
    if (before_) {
      setenv("TMPDIR", before_->c_str(), 1);
    } else {
      unsetenv("TMPDIR");
    }
  }

 private:
  std::optional<std::string> before_;
};

// A new file: to truncate and rewrite one makes some file systems flush it, a thousand times
// slower.
inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::filesystem::remove(path);
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace vn::test

#endif
