// BMP files read by rows, in the order in which they lie in the file.
#ifndef VNCORE_TOOLS_BMP_READER_H
#define VNCORE_TOOLS_BMP_READER_H

#include <memory>
#include <vector>

#include "tools/formats/bmp_header.h"
#include "tools/formats/bmp_runs.h"

namespace vn::tool {

class BmpReader : public PictureSource {
 public:
  BmpReader(std::unique_ptr<InputFile> file, const ReadOptions& options);

  const PictureInfo& Info() const override { return header_.info; }
  int32_t NextLine() const override {
    return header_.topDown ? delivered_ : header_.info.height - 1 - delivered_;
  }
  void ReadRow(uint8_t* row) override;

 private:
  // Takes a row of 16 or 32 bits apart.
  void ShowFields(uint8_t* row) const;

  std::unique_ptr<InputFile> file_;
  const BmpHeader header_;
  const Rgb background_;
  std::unique_ptr<BmpRuns> runs_;
  std::vector<uint8_t> deep_;  // a row as it stands in the file, above 24 bits or at 16
  int32_t delivered_ = 0;
};

}  // namespace vn::tool

#endif
