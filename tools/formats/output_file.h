// A file that appears under its name when it is complete, or not at all.
#ifndef VNCORE_TOOLS_OUTPUT_FILE_H
#define VNCORE_TOOLS_OUTPUT_FILE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace vn::tool {

// Bytes go to a temporary name in the same folder; Commit() renames it, which also replaces an
// earlier file in one step. A destructor without Commit() removes it. What is no regular file (a
// device, a pipe) is written directly.
//
// "-" is standard output, also written directly, unless whoever writes `seeks`: then the bytes wait in
// a file without a name until Commit() copies them.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, bool seeks = false);
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
  void OpenTemporary(unsigned mode);
  void CopyToStandardOutput();
  [[noreturn]] void Fail(int error) const;

  std::string path_;       // as the user wrote it, for messages
  std::string target_;     // the name that appears in the end, links resolved
  std::string temporary_;  // empty: none, or it became the target
  std::FILE* file_ = nullptr;
  bool copied_ = false;  // to standard output in the end
  int error_ = 0;
};

}  // namespace vn::tool

#endif
