// BMP files written by rows: the file header, and what Vn_ConvertToDIB makes of a bitmap.
#ifndef VNCORE_TOOLS_BMP_WRITER_H
#define VNCORE_TOOLS_BMP_WRITER_H

#include <memory>
#include <vector>

#include "tools/formats/output_file.h"
#include "tools/formats/picture.h"

namespace vn::tool {

class BmpWriter : public PictureSink {
 public:
  BmpWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info);

  void WriteRow(const uint8_t* row) override;
  void Finish() override;

 private:
  void WriteHead(const PictureInfo& info);
  // Writes the lines that the band holds to where they belong, the lowest line first.
  void Flush();
  void Write(const void* bytes, size_t count);
  [[noreturn]] void Fail() const;

  std::unique_ptr<OutputFile> file_;
  const int64_t usedBits_;  // of a row
  const uint32_t stride_, headBytes_;
  std::vector<uint8_t> band_;  // lines from the last one up to its end
  size_t bandLines_ = 0;
  int64_t linesLeft_;  // to be written in front of those in the file
};

}  // namespace vn::tool

#endif
