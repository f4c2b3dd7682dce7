// PBM, PGM and PPM files written by rows, in bytes.
#ifndef VNCORE_TOOLS_PNM_WRITER_H
#define VNCORE_TOOLS_PNM_WRITER_H

#include <memory>
#include <vector>

#include "tools/formats/output_file.h"
#include "tools/formats/picture.h"

namespace vn::tool {

enum class PnmKind { kBits, kGray, kColor, kAny };

class PnmWriter : public PictureSink {
 public:
  // `kAny` takes the least that the picture's palette allows. Throws Failure for one that the kind
  // does not hold.
  PnmWriter(std::unique_ptr<OutputFile> file, const PictureInfo& info, PnmKind kind);

  void WriteRow(const uint8_t* row) override;
  void Finish() override;

 private:
  void Write(const void* bytes, size_t count);

  std::unique_ptr<OutputFile> file_;
  const PictureInfo info_;
  PnmKind kind_;
  std::vector<uint8_t> row_;  // in the file's form
};

}  // namespace vn::tool

#endif
