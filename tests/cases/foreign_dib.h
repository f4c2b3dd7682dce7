// DIBs as strangers make them.
#ifndef VNCORE_TESTS_CASES_FOREIGN_DIB_H
#define VNCORE_TESTS_CASES_FOREIGN_DIB_H

#include <vector>

#include <vncore/platform/win32.h>
#include "tests/cases/case.h"

namespace vn::cases {

// Any length of header, depth, count of colours, compression and order of rows, of random pixels, in
// one piece as in a block of memory. What follows the header may be longer than it says.
class ForeignDib {
 public:
  explicit ForeignDib(Case& test);

  bool core() const { return headerBytes_ == 12; }
  int32_t width() const { return width_; }
  int32_t height() const { return height_; }
  int32_t bits() const { return bits_; }
  bool fields() const { return compression_ == kFields; }
  const BITMAPINFO* info() const { return reinterpret_cast<const BITMAPINFO*>(bytes_.data()); }
  const uint8_t* pixels() const { return bytes_.data() + pixelOffset_; }

  // A block of all of it, which tells so many planes.
  HGLOBAL NewBlock(WORD planes = 1) const;

 private:
  static constexpr uint32_t kRuns8 = 1, kRuns4 = 2, kFields = 3;  // values of biCompression

  void DrawKind(Case& test);
  size_t PlanesAt() const { return core() ? 8 : 12; }
  void PutHeader(Case& test);
  void PutTable(Case& test);
  void PutRuns(Case& test);
  void Put(uint32_t value, int bytes);

  uint32_t headerBytes_ = 40, compression_ = 0, colorsUsed_ = 0;
  int32_t width_, height_, bits_ = 0;
  bool topDown_ = false;
  size_t pixelOffset_ = 0;
  std::vector<uint8_t> bytes_;
};

}  // namespace vn::cases

#endif
