// What stands in front of the rows of a BMP file.
#ifndef VNCORE_TOOLS_BMP_HEADER_H
#define VNCORE_TOOLS_BMP_HEADER_H

#include "tools/formats/input_file.h"
#include "tools/formats/picture.h"

namespace vn::tool {

// How the pixels of a file of more than 8 bits hold a channel.
struct BmpField {
  uint32_t shift = 0, width = 0;

  // Of the bits of `mask`, which must be neighbours; throws Failure otherwise.
  static BmpField OfMask(const std::string& path, uint32_t mask);
  // The channel in 8 bits: narrow ones repeat their bits, of wide ones the upper bits count.
  uint32_t Of(uint32_t pixel) const;
};

struct BmpHeader {
  // Reads the head of the file up to its first row. Throws Failure for what is no BMP picture that
  // can be shown.
  explicit BmpHeader(InputFile& file);

  PictureInfo info;
  uint32_t bits = 0;  // of a pixel in the file
  bool topDown = false;
  bool runs = false;                   // run-length encoded, 4 or 8 bits
  BmpField red, green, blue, opacity;  // of 16 and 32 bits
};

inline bool IsBmp(const InputFile& file) {
  return file.HeadCount() >= 2 && file.Head()[0] == 'B' && file.Head()[1] == 'M';
}

// Sizes of the parts in front of the rows.
inline constexpr uint32_t kBmpFileHeaderBytes = 14;
inline constexpr uint32_t kBmpInfoHeaderBytes = 40;

}  // namespace vn::tool

#endif
