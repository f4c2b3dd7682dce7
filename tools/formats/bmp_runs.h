// The run-length codes of BMP files, row by row.
#ifndef VNCORE_TOOLS_BMP_RUNS_H
#define VNCORE_TOOLS_BMP_RUNS_H

#include <cstdint>
#include <vector>

#include "tools/formats/input_file.h"

namespace vn::tool {

// Codes are pairs of bytes: a count and the pixels to repeat, or 0 and a command: the line's end
// (0), the picture's end (1), a move by the two bytes that follow (2), or as many pixels as it says,
// padded to 2 bytes. Pixels that no code reaches have index 0, and those past a line's end are
// dropped.
class BmpRuns {
 public:
  // `bits` is 4 or 8. The file stands at its first code and outlives this.
  BmpRuns(InputFile& file, int32_t width, uint32_t bits);

  // Writes the next line's indexes. Throws Failure where the file ends within it.
  void Next(uint8_t* row);

 private:
  uint8_t Byte();
  void Put(uint8_t index) {
    if (x_ < line_.size()) line_[x_] = index;
    if (x_ < line_.size()) ++x_;
  }
  void Repeat(uint32_t count);
  void Copy(uint32_t count);
  // Goes right and up; true when that leaves the line.
  bool Move();
  void DecodeLine();
  void Store(uint8_t* row) const;

  InputFile& file_;
  const uint32_t bits_;
  std::vector<uint8_t> line_;  // an index per pixel
  std::vector<uint8_t> buffer_;
  size_t used_ = 0, filled_ = 0;
  size_t x_ = 0;        // where the next pixel goes
  uint32_t blank_ = 0;  // lines that a move has skipped
  bool ended_ = false;
};

}  // namespace vn::tool

#endif
