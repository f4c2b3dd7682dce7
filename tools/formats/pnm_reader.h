// PBM, PGM and PPM files, in digits or in bytes, as rows of 1, 8 or 24 bits. Samples of other ranges
// than 0 to 255 are rounded to it. As netpbm's manual pages pbm(5), pgm(5) and ppm(5) have them.
#ifndef VNCORE_TOOLS_PNM_READER_H
#define VNCORE_TOOLS_PNM_READER_H

#include <memory>
#include <vector>

#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"

namespace vn::tool {

bool IsPnm(const InputFile& file);

class PnmReader : public PictureSource {
 public:
  PnmReader(std::unique_ptr<InputFile> file, const ReadOptions& options);

  const PictureInfo& Info() const override { return info_; }
  int32_t NextLine() const override { return line_; }
  void ReadRow(uint8_t* row) override;

 private:
  // The next byte, or a space where the file ends.
  uint8_t Next();
  // The same with a line's end for a comment.
  uint8_t NextOfText();
  uint8_t NextAfterSpace();
  // A number of at most `most`, and the one byte behind it.
  uint32_t Number(uint32_t most);
  void ReadBits(uint8_t* row);
  void ReadBytes(void* to, size_t count);
  // The next row's samples into `samples_`.
  void ReadSamples();
  [[noreturn]] void Fail(const char* text) const;

  std::unique_ptr<InputFile> file_;
  PictureInfo info_;
  bool digits_ = false, ended_ = false;
  uint32_t most_ = 1;  // the largest sample, which is white
  int32_t line_ = 0;
  std::vector<uint8_t> bytes_;    // of a row as they stand in the file
  std::vector<uint8_t> samples_;  // of a row, 0 to 255
};

}  // namespace vn::tool

#endif
