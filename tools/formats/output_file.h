// A file that appears under its name when it is complete, or not at all.
#ifndef VNCORE_TOOLS_OUTPUT_FILE_H
#define VNCORE_TOOLS_OUTPUT_FILE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace vn::tool {

// A file under a temporary name, or none. The destructor removes one that has not appeared.
class HiddenFile {
 public:
  HiddenFile() = default;
  HiddenFile(std::string temporary, std::string target)
      : temporary_(std::move(temporary)), target_(std::move(target)) {}
  HiddenFile(HiddenFile&& other) noexcept { Swap(other); }
  HiddenFile& operator=(HiddenFile&& other) noexcept {
    Swap(other);
    return *this;
  }
  ~HiddenFile();

  // Gives it its name, which also replaces an earlier file in one step. Throws Failure.
  void Appear();

 private:
  void Swap(HiddenFile& other) noexcept {
    temporary_.swap(other.temporary_);
    target_.swap(other.target_);
  }

  std::string temporary_;  // empty: none, or it has appeared
  std::string target_;
};

// Bytes go to a temporary name in the same folder, until Commit(): then the file appears, or joins the
// `waiting` ones, complete. A destructor without Commit() removes it. What is no regular file (a
// device, a pipe) is written directly.
//
// "-" is standard output, also written directly, unless whoever writes `seeks`: then the bytes wait in
// a file without a name until Commit() copies them.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, bool seeks = false,
                      std::vector<HiddenFile>* waiting = nullptr);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  const std::string& Path() const { return path_; }

  // Returns false on failure; ErrorText() then says why. Never throws, for callbacks of C
  // libraries.
  bool Write(const void* bytes, size_t count) noexcept;
  // Reads back what was written, after a seek; a device cannot do this.
  bool Read(void* to, size_t count) noexcept;
  // Moves the position as lseek does and returns it, or a negative value: a pipe cannot do this.
  int64_t Seek(int64_t offset, int whence) noexcept;
  // Whether a write or a seek has failed.
  bool HasError() const noexcept { return error_ != 0; }
  const char* ErrorText() const noexcept;
  // Throws Failure when the file cannot be completed.
  void Commit();

 private:
  void OpenStandardOutput(bool seeks);
  void OpenTemporary(const std::string& target, unsigned mode);
  void CopyToStandardOutput();
  [[noreturn]] void Fail(int error) const;

  std::string path_;   // as the user wrote it, for messages
  HiddenFile hidden_;  // none: it is written directly
  std::vector<HiddenFile>* waiting_;
  std::FILE* file_ = nullptr;
  bool copied_ = false;  // to standard output in the end
  int error_ = 0;
};

// Makes a folder, and those above it, where they are missing. Throws Failure.
void MakeFolder(const std::string& path);

}  // namespace vn::tool

#endif
