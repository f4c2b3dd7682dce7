// A TIFF file that is read: libtiff over an InputFile, with failures in our words.
#ifndef VNCORE_TOOLS_TIFF_INPUT_H
#define VNCORE_TOOLS_TIFF_INPUT_H

#include <memory>
#include <string>

#include "tools/formats/input_file.h"
#include "tools/formats/tiff_handle.h"

namespace vn::tool {

class TiffInput {
 public:
  // Opens a page, the first being 1. Throws Failure, as all here do.
  TiffInput(std::unique_ptr<InputFile> file, int32_t page);

  int32_t Pages() const { return pages_; }
  const std::string& Path() const { return file_->Path(); }
  TIFF* Get() const { return tiff_.get(); }

  // The value of a field, its default, or zero.
  template <class Value>
  Value Field(uint32_t tag) const {
    Value value{};
    TIFFGetFieldDefaulted(Get(), tag, &value);
    return value;
  }

  // For results of reads. Damage that libtiff told of and went on after is a failure as well.
  void RequireSound(bool done) const {
    if (!done || error_.text[0]) Fail();
  }
  [[noreturn]] void Fail() const;
  [[noreturn]] void Fail(const std::string& text) const;

 private:
  std::unique_ptr<InputFile> file_;
  TiffError error_;
  TiffPointer tiff_;
  int32_t pages_ = 1;
};

}  // namespace vn::tool

#endif
