// A file that is read from its start to its end, or here and there.
#ifndef VNCORE_TOOLS_INPUT_FILE_H
#define VNCORE_TOOLS_INPUT_FILE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace vn::tool {

class InputFile {
 public:
  // "-" is standard input. Throws Failure when there is nothing to read.
  explicit InputFile(const std::string& path);

  const std::string& Path() const { return path_; }
  bool IsStandardInput() const { return standard_; }
  // The first bytes, which are read again later.
  static constexpr size_t kHeadBytes = 8;
  const uint8_t* Head() const { return head_; }
  size_t HeadCount() const { return headCount_; }

  // Reads exactly `count` bytes, or returns false; ErrorText() then says why. Never throws, so that
  // a C library's callback may call it.
  bool Read(void* to, size_t count) noexcept;
  // Reads up to `count` bytes: fewer at the end of the file or after an error.
  size_t ReadSome(void* to, size_t count) noexcept;
  // Moves the position as lseek does and returns it, or a negative value: a pipe cannot do this,
  // unless it is standard input of which nothing but the head was read.
  int64_t Seek(int64_t offset, int whence) noexcept;
  // Goes to the start, for whoever reads here and there. Throws Failure.
  void Rewind();
  // Whether the system, and not the file's end, stopped the last read or seek.
  bool HasError() const noexcept { return error_ != 0; }
  const char* ErrorText() const noexcept;

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  // Puts a file without a name, with all that it brings, in the place of standard input.
  bool SpoolStandardInput() noexcept;

  std::string path_;
  std::unique_ptr<std::FILE, Close> file_;
  uint8_t head_[kHeadBytes] = {};
  size_t headCount_ = 0;
  size_t headUsed_ = 0;
  int error_ = 0;
  bool standard_ = false;
};

}  // namespace vn::tool

#endif
