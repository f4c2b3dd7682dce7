// A row laid into a wider row of one colour.
#ifndef VNCORE_GEOMETRY_SHEAR_ROW_H
#define VNCORE_GEOMETRY_SHEAR_ROW_H

#include <vncore/vncore.h>
#include "kernel/scratch_buffer.h"

namespace vn {

// Copies `width` pixels of `bits` bits to pixel `offset` of `target`, whose other pixels stay.
void InsertPixels(int32_t bits, const uint8_t* source, uint32_t width, uint8_t* target,
                  uint32_t offset);

// The rows of a sheared bitmap.
class ShearRow {
 public:
  // Rows of `target`, which is settled but for its pixels, around rows of `width` pixels.
  // Test it: empty when memory failed.
  ShearRow(BitmapHandle* target, COLORREF fillColor, uint32_t width);
  explicit operator bool() const { return static_cast<bool>(fill_); }

  // Writes a whole row: `source` from pixel `offset` on, and the colour around it.
  void Write(const uint8_t* source, uint32_t offset, uint8_t* row) const;
  // Writes a row of the colour alone.
  void WriteFill(uint8_t* row) const;

 private:
  int32_t bits_;
  uint32_t width_;
  uint32_t stride_;
  ScratchBuffer<uint8_t> fill_;
};

}  // namespace vn

#endif
