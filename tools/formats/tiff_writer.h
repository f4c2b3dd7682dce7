// TIFF files written by rows, in strips: two colours as fax (CCITT Group 4) where they are black
// and white, else LZW; up to 8 bits with the palette or as gray, else 24-bit colour.
#ifndef VNCORE_TOOLS_TIFF_WRITER_H
#define VNCORE_TOOLS_TIFF_WRITER_H

#include <memory>
#include <vector>

#include "tools/formats/output_file.h"
#include "tools/formats/picture.h"
#include "tools/formats/tiff_handle.h"

namespace vn::tool {

class TiffWriter : public PictureSink {
 public:
  // The first of so many pages.
  TiffWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info, int32_t pages);

  void WriteRow(const uint8_t* row) override;
  void NextPage(const PictureInfo& info) override;
  void Finish() override;
  MetadataRoom Room() const override { return room_; }

 private:
  void BeginPage(const PictureInfo& info);
  void WriteHeader(const PictureInfo& info);
  void WritePalette(const std::vector<RGBQUAD>& colors);
  void Set(uint32_t tag, int value);
  void RequireDone(bool done) const {
    if (!done || error_.text[0]) Fail();
  }
  [[noreturn]] void Fail() const;

  std::unique_ptr<OutputFile> file_;
  TiffError error_;
  TiffPointer tiff_;
  const int32_t pages_;
  int32_t page_ = 0;  // the present one
  bool color_ = false;
  MetadataRoom room_;
  uint32_t line_ = 0;
  std::vector<uint8_t> row_;  // a copy, which libtiff may change
};

}  // namespace vn::tool

#endif
